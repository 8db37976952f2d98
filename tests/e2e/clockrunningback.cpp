// Loaded before everything else, it lets a program and its children see a calendar clock that runs
// backwards, a quarter of an hour each second. Clocks that only count are left alone, as by
// somebody who sets the time.

#include <cstdint>
#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr std::int64_t kSpeed = 900;
constexpr std::int64_t kSecond = 1'000'000'000; // ns

std::int64_t nanoseconds(clockid_t clock)
{
    timespec now = {};
    ::syscall(SYS_clock_gettime, clock, &now);
    return now.tv_sec * kSecond + now.tv_nsec;
}

timespec calendarTime(clockid_t clock)
{
    static const std::int64_t start = nanoseconds(CLOCK_MONOTONIC);
    const std::int64_t now = nanoseconds(clock) - kSpeed * (nanoseconds(CLOCK_MONOTONIC) - start);
    return { time_t(now / kSecond), long(now % kSecond) };
}

} // namespace

extern "C" int clock_gettime(clockid_t clock, timespec *result) noexcept
{
    const bool isCalendar = clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE;
    if (!isCalendar)
        return int(::syscall(SYS_clock_gettime, clock, result));
    *result = calendarTime(clock);
    return 0;
}

extern "C" int gettimeofday(timeval *result, void *) noexcept
{
    const timespec now = calendarTime(CLOCK_REALTIME);
    *result = { now.tv_sec, now.tv_nsec / 1000 };
    return 0;
}

extern "C" time_t time(time_t *result) noexcept
{
    const time_t now = calendarTime(CLOCK_REALTIME).tv_sec;
    if (result)
        *result = now;
    return now;
}
