// first_picture COMMAND...: starts a program and prints the milliseconds until the middle of the screen shows
// something else than before. Then ends the program.
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace {

using std::chrono::steady_clock;

constexpr std::chrono::seconds kPatience{20};

std::uint32_t middleOf(xcb_connection_t* connection, const xcb_screen_t& screen) {
    const auto request = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen.root,
                                       static_cast<std::int16_t>(screen.width_in_pixels / 2),
                                       static_cast<std::int16_t>(screen.height_in_pixels / 2), 1, 1, ~0U);
    xcb_get_image_reply_t* const reply = xcb_get_image_reply(connection, request, nullptr);
    if (reply == nullptr)
        return 0;
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, xcb_get_image_data(reply), sizeof pixel);
    std::free(reply);
    return pixel & 0xFFFFFF;
}

}  // namespace

int main(int argc, char** argv) {
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    if (argc < 2 || xcb_connection_has_error(connection) != 0)
        return 2;
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    // Pictures are drawn over a colour that none of them has in its middle.
    const std::uint32_t colour = 0x12AB34;
    xcb_change_window_attributes(connection, screen.root, XCB_CW_BACK_PIXEL, &colour);
    xcb_clear_area(connection, 0, screen.root, 0, 0, 0, 0);
    const std::uint32_t before = middleOf(connection, screen);
    const auto start = steady_clock::now();
    const pid_t program = fork();
    if (program == 0) {
        execv(argv[1], argv + 1);
        _exit(127);
    }
    bool shown = false;
    while (!shown && steady_clock::now() < start + kPatience) {
        std::this_thread::sleep_for(std::chrono::microseconds(500));
        shown = middleOf(connection, screen) != before;
    }
    const std::chrono::duration<double, std::milli> taken = steady_clock::now() - start;
    kill(program, SIGTERM);
    waitpid(program, nullptr, 0);
    if (shown)
        std::printf("%.1f\n", taken.count());
    return shown ? 0 : 1;
}
