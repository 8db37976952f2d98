// Loaded before everything else, it lets a program and its children see a calendar clock that runs
// backwards, a quarter of an hour each second. Clocks that only count are left alone, as by
// somebody who sets the time.

#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr time_t kSpeed = 900;

timespec clockNow(clockid_t clock)
{
    timespec now = {};
    ::syscall(SYS_clock_gettime, clock, &now);
    return now;
}

timespec turnedBack(timespec now)
{
    static const time_t start = clockNow(CLOCK_MONOTONIC).tv_sec;
    now.tv_sec -= kSpeed * (clockNow(CLOCK_MONOTONIC).tv_sec - start);
    return now;
}

} // namespace

extern "C" int clock_gettime(clockid_t clock, timespec *result) noexcept
{
    const bool isCalendar = clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE;
    if (!isCalendar)
        return int(::syscall(SYS_clock_gettime, clock, result));
    *result = turnedBack(clockNow(clock));
    return 0;
}

extern "C" int gettimeofday(timeval *result, void *) noexcept
{
    const timespec now = turnedBack(clockNow(CLOCK_REALTIME));
    *result = { now.tv_sec, now.tv_nsec / 1000 };
    return 0;
}

extern "C" time_t time(time_t *result) noexcept
{
    const time_t now = turnedBack(clockNow(CLOCK_REALTIME)).tv_sec;
    if (result)
        *result = now;
    return now;
}
