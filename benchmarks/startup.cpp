// How long a program takes from its start to its first painted frame, and what memory it has then,
// beside another one.
//
//   bench_startup <program> [<argument>...] -- <yardstick> [<argument>...]
//
// To be run on a bare X display of 680 × 474 pixels, without a window manager, so that any first
// frame covers the middle of the screen: benchmarks/startup does all of that. The two take turns,
// so that what else the machine does hits both.

#include "timing.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr int kRuns = 15;
constexpr char kRunMarker[] = "VARNEL_BENCH_RUN"; ///< the variable that tells whose a process is
constexpr auto kPatience = 60s;
constexpr auto kLook = 500us; ///< how often the screen is looked at
constexpr auto kSettle = 300ms; ///< until memory is read: the entrance is on its way

class Screen
{
public:
    Screen() : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection)) {
            std::fprintf(stderr, "There is no X display.\n");
            std::exit(1);
        }
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    }
    ~Screen() { xcb_disconnect(m_connection); }
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;

    [[nodiscard]] std::uint32_t middle() const
    {
        const auto cookie = xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_root->root,
                                          std::int16_t(m_root->width_in_pixels / 2),
                                          std::int16_t(m_root->height_in_pixels / 2), 1, 1, ~0U);
        xcb_get_image_reply_t *reply = xcb_get_image_reply(m_connection, cookie, nullptr);
        const std::uint8_t *bytes = xcb_get_image_data(reply);
        const std::uint32_t pixel = std::uint32_t(bytes[0] | bytes[1] << 8 | bytes[2] << 16);
        std::free(reply);
        return pixel;
    }

private:
    xcb_connection_t *m_connection;
    xcb_screen_t *m_root;
};

struct Result
{
    double milliseconds = 0.0;
    double megabytes = 0.0; ///< proportional share of what is mapped
};

double memoryOf(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/smaps_rollup");
    for (std::string word; file >> word;) {
        double kilobytes = 0.0;
        if (word == "Pss:" && file >> kilobytes)
            return kilobytes / 1024;
    }
    return 0.0;
}

/// Waits until `condition` holds; gives up with `program` and what is wrong with it.
template <typename Condition>
void await(const char *program, const char *complaint, Condition condition)
{
    const auto end = Clock::now() + kPatience;
    while (!condition()) {
        if (Clock::now() > end) {
            std::fprintf(stderr, "%s %s.\n", program, complaint);
            std::exit(1);
        }
        std::this_thread::sleep_for(kLook);
    }
}

/// Kills all that the program has started: an engine's second process has a session of its own.
void killRun()
{
    const std::string marker = std::string(kRunMarker) + '=' + std::to_string(getpid());
    for (const auto &entry : std::filesystem::directory_iterator("/proc")) {
        const int process = std::atoi(entry.path().filename().c_str());
        std::ifstream file(entry.path() / "environ");
        const std::string environment((std::istreambuf_iterator<char>(file)), {});
        if (process > 0 && process != getpid() && environment.find(marker) != std::string::npos)
            kill(process, SIGKILL);
    }
}

Result runOnce(const Screen &screen, std::vector<char *> command)
{
    const std::uint32_t empty = screen.middle();
    command.push_back(nullptr);
    pid_t process = 0;
    const auto start = Clock::now();
    if (posix_spawnp(&process, command[0], nullptr, nullptr, command.data(), environ) != 0) {
        std::fprintf(stderr, "%s does not start.\n", command[0]);
        std::exit(1);
    }
    await(command[0], "shows nothing", [&] { return screen.middle() != empty; });
    const std::chrono::duration<double, std::milli> time = Clock::now() - start;
    std::this_thread::sleep_for(kSettle);
    const double memory = memoryOf(process);
    killRun();
    waitpid(process, nullptr, 0);
    await(command[0], "stays on screen", [&] { return screen.middle() == empty; });
    return { time.count(), memory };
}

} // namespace

int main(int argc, char *argv[])
{
    std::vector<char *> commands[2];
    int which = 0;
    for (int i = 1; i < argc; ++i) {
        if (std::string(argv[i]) == "--")
            which = 1;
        else
            commands[which].push_back(argv[i]);
    }
    if (commands[0].empty() || commands[1].empty()) {
        std::fprintf(stderr, "usage: bench_startup <program>... -- <yardstick>...\n");
        return 1;
    }
    setenv(kRunMarker, std::to_string(getpid()).c_str(), 1);
    const Screen screen;
    std::vector<double> times[2];
    std::vector<double> memory[2];
    for (int run = 0; run <= kRuns; ++run) {
        for (int i : { 0, 1 }) {
            const Result result = runOnce(screen, commands[i]);
            if (run == 0)
                continue; // caches are warm from here on
            times[i].push_back(result.milliseconds);
            memory[i].push_back(result.megabytes);
        }
    }
    std::printf("start to first frame   %7.1f ms   yardstick %7.1f ms   %.2f x\n", median(times[0]),
                median(times[1]), median(times[0]) / median(times[1]));
    std::printf("memory %lld ms later   %7.1f MB   yardstick %7.1f MB   %+.1f MB\n",
                static_cast<long long>(std::chrono::milliseconds(kSettle).count()),
                median(memory[0]), median(memory[1]), median(memory[0]) - median(memory[1]));
    return 0;
}
