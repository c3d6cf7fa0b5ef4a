// A small clipboard manager: keeps the picture of a program that ends.
//
//   lumaframe_test_clipboard_manager keep      answers SAVE_TARGETS and serves image/png afterwards
//   lumaframe_test_clipboard_manager silent    owns CLIPBOARD_MANAGER and never answers
//
// Prints "ready", then "saved <bytes>" when it has taken a picture over.
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "desktop/clipboard.h"

namespace {

using desktop::XClient;

class Manager {
  public:
    Manager() : client_({}), clipboard_({}), window_(xcb_generate_id(client_.get())) {
        xcb_create_window(client_.get(), XCB_COPY_FROM_PARENT, window_, client_.root(), -10, -10, 1,
                          1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        own("CLIPBOARD_MANAGER");
    }

    void serve() {
        while (xcb_connection_has_error(client_.get()) == 0) {
            const desktop::Reply<xcb_generic_event_t> event(xcb_wait_for_event(client_.get()));
            if (event && (event->response_type & 0x7fU) == XCB_SELECTION_REQUEST) {
                answer(reinterpret_cast<const xcb_selection_request_event_t&>(*event));
            }
        }
    }

  private:
    void own(const std::string& selection) {
        xcb_set_selection_owner(client_.get(), window_, client_.atom(selection), XCB_CURRENT_TIME);
        client_.synchronize();
    }

    void answer(const xcb_selection_request_event_t& request) {
        if (request.target == client_.atom("SAVE_TARGETS")) {
            const auto picture = clipboard_.read("image/png");
            picture_ = picture.value_or(std::vector<std::uint8_t>{});
            own("CLIPBOARD");
            std::cout << "saved " << picture_.size() << std::endl;
            notify(request, request.property);
        } else if (request.target == client_.atom("image/png")) {
            // Small enough for one property: the connection allows requests of megabytes.
            xcb_change_property(client_.get(), XCB_PROP_MODE_REPLACE, request.requestor,
                                request.property, request.target, 8,
                                static_cast<std::uint32_t>(picture_.size()), picture_.data());
            notify(request, request.property);
        } else {
            notify(request, XCB_ATOM_NONE);
        }
    }

    void notify(const xcb_selection_request_event_t& request, xcb_atom_t property) {
        xcb_selection_notify_event_t event{};
        event.response_type = XCB_SELECTION_NOTIFY;
        event.time = request.time;
        event.requestor = request.requestor;
        event.selection = request.selection;
        event.target = request.target;
        event.property = property;
        xcb_send_event(client_.get(), 0, request.requestor, 0,
                       reinterpret_cast<const char*>(&event));
        xcb_flush(client_.get());
    }

    XClient client_;
    desktop::Clipboard clipboard_;
    xcb_window_t window_;
    std::vector<std::uint8_t> picture_;
};

}  // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "keep";
    Manager manager;
    std::cout << "ready" << std::endl;
    if (mode == "keep") {
        manager.serve();
    } else {
        // Owning is all it does.
        desktop::waitUntil([] { return false; }, std::chrono::hours(1));
    }
    return 0;
}
