#include <filesystem>

#include "contracts/file_manager_contract.h"
#include "doubles/fake_file_manager.h"
#include "platform/freedesktop/temporary_directory.h"
#include "platform/freedesktop/xdg_file_manager.h"

namespace contracts {
namespace {

class FakeFileManagerWorld final : public FileManagerWorld {
  public:
    base::FileManager& manager() override { return manager_; }
    std::string folder() override { return manager_.downloads.front(); }
    void makeFolder(const std::string& path) override { manager_.addFolder(path); }
    std::string contents(const std::string& path) override {
        const auto file = manager_.files.find(path);
        return file == manager_.files.end() ? "no file"
                                            : std::string(file->second.begin(), file->second.end());
    }

  private:
    doubles::FakeFileManager manager_;
};

class XdgFileManagerWorld final : public FileManagerWorld {
  public:
    base::FileManager& manager() override { return manager_; }
    std::string folder() override { return directory_.path(); }
    void makeFolder(const std::string& path) override { std::filesystem::create_directory(path); }
    std::string contents(const std::string& path) override {
        return std::filesystem::is_regular_file(path)
                   ? freedesktop_tests::TemporaryDirectory::contents(path)
                   : "no file";
    }

  private:
    freedesktop_tests::TemporaryDirectory directory_;
    platform::freedesktop::XdgFileManager manager_{{.home = directory_.path(),
                                                    .configHome = directory_.path("config"),
                                                    .dataHome = "",
                                                    .dataDirectories = {}}};
};

INSTANTIATE_TEST_SUITE_P(Fake, FileManagerContract, testing::Values(MakeFileManagerWorld([] {
                             return std::make_unique<FakeFileManagerWorld>();
                         })));
INSTANTIATE_TEST_SUITE_P(Xdg, FileManagerContract, testing::Values(MakeFileManagerWorld([] {
                             return std::make_unique<XdgFileManagerWorld>();
                         })));

}  // namespace
}  // namespace contracts
