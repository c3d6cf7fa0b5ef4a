#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "contracts/login_item_service_contract.h"
#include "doubles/fake_login_item_service.h"
#include "platform/freedesktop/temporary_directory.h"
#include "platform/freedesktop/xdg_login_item_service.h"

namespace contracts {
namespace {

class FakeLoginItemWorld final : public LoginItemServiceWorld {
  public:
    ui::LoginItemService& service() override { return service_; }
    void switchOffElsewhere() override { service_.current = ui::LoginItemStatus::requiresApproval; }
    void breakMedium() override {
        service_.error = base::Error{base::ErrorKind::notPermitted, "Nothing can be written."};
    }

  private:
    doubles::FakeLoginItemService service_;
};

class XdgLoginItemWorld final : public LoginItemServiceWorld {
  public:
    ~XdgLoginItemWorld() override {
        if (isSomebodyElse_) {
            EXPECT_EQ(::seteuid(0), 0);
        }
        setModes(0700);
    }
    ui::LoginItemService& service() override { return service_; }
    void switchOffElsewhere() override {
        std::ofstream(directory_.path("config/autostart/app.lumaframe.Lumaframe.desktop"),
                      std::ios::app)
            << "Hidden=true\n";
    }
    void breakMedium() override {
        setModes(0555);
        // Nothing is read-only for root.
        if (::geteuid() == 0) {
            constexpr uid_t nobody = 65534;
            isSomebodyElse_ = ::seteuid(nobody) == 0;
        }
    }

  private:
    void setModes(int mode) const {
        const auto permissions = static_cast<std::filesystem::perms>(mode);
        std::filesystem::permissions(directory_.path(), permissions);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(directory_.path())) {
            if (entry.is_directory()) {
                std::filesystem::permissions(entry.path(), permissions);
            }
        }
    }

    freedesktop_tests::TemporaryDirectory directory_;
    bool isSomebodyElse_ = false;
    platform::freedesktop::XdgLoginItemService service_{
        {.home = directory_.path(),
         .configHome = directory_.path("config"),
         .dataHome = "",
         .dataDirectories = {},
         .configDirectories = {directory_.path("xdg")}},
        {.currentDesktops = {}, .runningProgram = [] { return "/bin/sh"; }}};
};

INSTANTIATE_TEST_SUITE_P(Fake, LoginItemServiceContract,
                         testing::Values(MakeLoginItemServiceWorld([] {
                             return std::make_unique<FakeLoginItemWorld>();
                         })));
INSTANTIATE_TEST_SUITE_P(Xdg, LoginItemServiceContract,
                         testing::Values(MakeLoginItemServiceWorld([] {
                             return std::make_unique<XdgLoginItemWorld>();
                         })));

}  // namespace
}  // namespace contracts
