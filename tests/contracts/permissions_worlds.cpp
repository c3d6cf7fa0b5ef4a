#include <optional>

#include "contracts/permissions_contract.h"
#include "doubles/fake_permissions.h"
#include "doubles/polled_watch.h"
#include "platform/freedesktop/session_permissions.h"
#include "platform/freedesktop/temporary_directory.h"
#include "platform/x11/x11_access.h"
#include "platform/x11/x11_rig.h"

namespace contracts {
namespace {

using freedesktop_tests::ScopedVariable;
using platform::freedesktop::SessionPermissions;
using platform::x11::X11Access;

class FakePermissionsWorld final : public PermissionsWorld {
  public:
    base::Permissions& permissions() override { return permissions_; }
    void holdEveryKey() override {
        permissions_.accessibilityIsTrusted = false;
        permissions_.keyboardLimit = "Somebody has them.";
    }
    void letKeysGo() override {
        permissions_.accessibilityIsTrusted = true;
        permissions_.keyboardLimit.clear();
    }
    void distrust() override {
        permissions_.screenIsAllowed = permissions_.accessibilityIsTrusted = false;
        permissions_.screenLimit = permissions_.keyboardLimit = "Nobody trusts you.";
    }
    std::size_t openedCount() override { return permissions_.openedPages.size(); }

  private:
    doubles::FakePermissions permissions_;
};

/// A session of a real X server in which no program opens pages.
class X11PermissionsWorld final : public PermissionsWorld {
  public:
    base::Permissions& permissions() override { return permissions_; }
    void holdEveryKey() override {
        // A round trip of the program's: the server has taken back what its last question took.
        EXPECT_TRUE(access_->canReadScreen());
        auto& other = desktop_.client();
        xcb_grab_key(other.get(), 0, other.root(), XCB_MOD_MASK_ANY, XCB_GRAB_ANY,
                     XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        other.synchronize();
    }
    void letKeysGo() override {
        auto& other = desktop_.client();
        xcb_ungrab_key(other.get(), XCB_GRAB_ANY, other.root(), XCB_MOD_MASK_ANY);
        other.synchronize();
    }
    void distrust() override {
        const ScopedVariable variable("XAUTHORITY", authority_.c_str());
        untrusted_ = tests::connectTo(desktop_);
        access_.emplace(*untrusted_);
    }
    std::size_t openedCount() override { return openedCount_; }

  private:
    static desktop::DesktopOptions bare() {
        desktop::DesktopOptions options;
        options.windowManager = desktop::WindowManager::none;
        return options;
    }

    desktop::Desktop desktop_{bare()};
    std::string authority_ = desktop_.makeUntrustedAuthority();
    freedesktop_tests::TemporaryDirectory directory_;
    ScopedVariable path_{"PATH", directory_.path().c_str()};
    std::unique_ptr<platform::x11::Connection> trusted_ = tests::connectTo(desktop_);
    std::unique_ptr<platform::x11::Connection> untrusted_;
    std::optional<X11Access> access_{*trusted_};
    doubles::PolledWatch watch_;
    platform::freedesktop::ProgramStarter starter_{watch_.watch()};
    std::size_t openedCount_ = 0;
    SessionPermissions permissions_{{.canReadScreen = [this] { return access_->canReadScreen(); },
                                     .canGrabKeys = [this] { return access_->canGrabKeys(); },
                                     .isNested = [this] { return access_->isXwayland(); }},
                                    {.currentDesktops = {},
                                     .helpPage = "/help.html",
                                     .starter = starter_,
                                     .showHelpPage = [this](const auto&) { ++openedCount_; }}};
};

INSTANTIATE_TEST_SUITE_P(Fake, PermissionsContract, testing::Values(MakePermissionsWorld([] {
                             return std::make_unique<FakePermissionsWorld>();
                         })));
INSTANTIATE_TEST_SUITE_P(X11, PermissionsContract, testing::Values(MakePermissionsWorld([] {
                             return std::make_unique<X11PermissionsWorld>();
                         })));

}  // namespace
}  // namespace contracts
