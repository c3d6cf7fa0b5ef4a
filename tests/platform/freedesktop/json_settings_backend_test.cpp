#include "platform/freedesktop/json_settings_backend.h"

#include <gmock/gmock.h>
#include <poll.h>

#include <cstdint>
#include <limits>
#include <thread>

#include "doubles/fake_log.h"
#include "doubles/manual_main_queue.h"
#include "platform/freedesktop/temporary_directory.h"

namespace {

using app::SettingsValue;
using freedesktop_tests::TemporaryDirectory;
using platform::freedesktop::JsonSettingsBackend;
using platform::freedesktop::XdgDirectories;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// The descriptor that the back end watches, read when the test says so.
class Watch {
  public:
    platform::WatchFileDescriptor function() {
        return [this](int fileDescriptor, std::function<void()> onReadable) {
            fileDescriptor_ = fileDescriptor;
            onReadable_ = std::move(onReadable);
            return std::make_shared<int>(0);
        };
    }
    /// Whether something was to be read within the limit.
    bool dispatch(int limitMilliseconds = 5000) {
        pollfd entry{fileDescriptor_, POLLIN, 0};
        if (::poll(&entry, 1, limitMilliseconds) != 1) {
            return false;
        }
        onReadable_();
        return true;
    }

  private:
    int fileDescriptor_ = -1;
    std::function<void()> onReadable_;
};

class JsonSettings : public testing::Test {
  protected:
    std::unique_ptr<JsonSettingsBackend> open() {
        XdgDirectories directories;
        directories.configHome = directory_.path("config");
        return JsonSettingsBackend::create(directories, log_, queue_, watch_.function());
    }
    void writeFile(const std::string& text) {
        directory_.write("config/lumaframe/settings.json", text);
    }
    std::string file() { return directory_.read("config/lumaframe/settings.json"); }
    std::string filePath() { return directory_.path("config/lumaframe/settings.json"); }
    std::vector<std::string> filesSetAside() {
        std::vector<std::string> names;
        for (const auto& entry :
             std::filesystem::directory_iterator(directory_.path("config/lumaframe"))) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with("settings.json.corrupt-")) {
                names.push_back(entry.path().string());
            }
        }
        return names;
    }
    void TearDown() override { queue_.runAll(); }

    TemporaryDirectory directory_;
    doubles::FakeLog log_;
    doubles::ManualMainQueue queue_;
    Watch watch_;
};

TEST_F(JsonSettings, a_fresh_home_has_no_values_and_gets_no_file_by_reading) {
    const auto settings = open();
    EXPECT_EQ(settings->read("playSounds"), std::nullopt);
    EXPECT_FALSE(std::filesystem::exists(directory_.path("config")));
    EXPECT_THAT(log_.lines, IsEmpty());
}

TEST_F(JsonSettings, each_type_comes_back_as_it_was_written_also_in_the_next_process) {
    auto settings = open();
    const std::vector<std::pair<std::string, SettingsValue>> values{
        {"off", false},
        {"on", true},
        {"zero", std::int64_t{0}},
        {"one", std::int64_t{1}},
        {"smallest", std::numeric_limits<std::int64_t>::min()},
        {"largest", std::numeric_limits<std::int64_t>::max()},
        {"empty", std::string()},
        {"path", std::string("/home/žofie/Обои \"1\"\\\n🖼")}};
    for (const auto& [key, value] : values) {
        EXPECT_TRUE(settings->write(key, value));
    }
    settings = open();
    for (const auto& [key, value] : values) {
        EXPECT_EQ(settings->read(key), std::optional(value)) << key;
    }
}

TEST_F(JsonSettings, the_file_and_its_directory_are_the_owners_alone) {
    ASSERT_TRUE(open()->write("playSounds", true));
    EXPECT_EQ(TemporaryDirectory::modeOf(filePath()), 0600U);
    EXPECT_EQ(TemporaryDirectory::modeOf(directory_.path("config/lumaframe")), 0700U);
    EXPECT_EQ(TemporaryDirectory::modeOf(directory_.path("config")), 0700U);
}

TEST_F(JsonSettings, a_write_leaves_no_other_file_behind) {
    ASSERT_TRUE(open()->write("playSounds", true));
    int files = 0;
    for ([[maybe_unused]] const auto& entry :
         std::filesystem::directory_iterator(directory_.path("config/lumaframe"))) {
        ++files;
    }
    EXPECT_EQ(files, 1);
}

TEST_F(JsonSettings, what_is_no_setting_reads_as_absent_and_is_kept) {
    writeFile(
        R"({"float": 1.5, "whole": 2.0, "null": null, "list": [1, {"a": 2}], "big": 18446744073709551615,
                  "object": {"b": []}, "mine": 3})");
    const auto settings = open();
    for (const char* key : {"float", "whole", "null", "list", "big", "object"}) {
        EXPECT_EQ(settings->read(key), std::nullopt) << key;
    }
    ASSERT_TRUE(settings->write("mine", std::int64_t{4}));
    EXPECT_THAT(file(), HasSubstr(R"("list": [1,{"a":2}])"));
    EXPECT_THAT(file(), HasSubstr(R"("float": 1.5)"));
    EXPECT_THAT(file(), HasSubstr(R"("big": 18446744073709551615)"));
    EXPECT_THAT(file(), HasSubstr(R"("null": null)"));
    EXPECT_EQ(settings->read("mine"), std::optional<SettingsValue>(std::int64_t{4}));
}

TEST_F(JsonSettings, a_bool_is_no_number_and_a_number_no_bool) {
    writeFile(R"({"bool": true, "int": 1})");
    const auto settings = open();
    EXPECT_EQ(settings->read("bool"), std::optional<SettingsValue>(true));
    EXPECT_EQ(settings->read("int"), std::optional<SettingsValue>(std::int64_t{1}));
}

class BrokenSettings : public JsonSettings, public testing::WithParamInterface<std::string> {};

TEST_P(BrokenSettings, the_file_is_set_aside_and_said_in_one_line) {
    writeFile(GetParam());
    const auto settings = open();
    EXPECT_EQ(settings->read("playSounds"), std::nullopt);
    ASSERT_THAT(filesSetAside(), SizeIs(1));
    EXPECT_EQ(TemporaryDirectory::contents(filesSetAside().front()), GetParam());
    EXPECT_FALSE(std::filesystem::exists(filePath()));
    ASSERT_THAT(log_.lines, SizeIs(1));
    EXPECT_THAT(log_.lines.front(), HasSubstr(filesSetAside().front()));
    EXPECT_TRUE(settings->write("playSounds", false));
    EXPECT_EQ(open()->read("playSounds"), std::optional<SettingsValue>(false));
}

INSTANTIATE_TEST_SUITE_P(, BrokenSettings,
                         testing::Values("", "{", "[]", "3", "{\"a\": 1,}", "{\"a\": tru",
                                         "{\"a\": \"\xff\"}", "{\"a\": 1e999}",
                                         std::string(200000, '['),
                                         "{\"a\": " + std::string(100, '[') +
                                             std::string(100, ']') + "}",
                                         std::string("{\"a\": 1}\0x", 10)));

TEST_F(JsonSettings, a_file_that_others_may_read_is_the_owners_alone_once_it_is_set_aside) {
    writeFile("broken");
    std::filesystem::permissions(filePath(), std::filesystem::perms{0644});
    const auto settings = open();
    ASSERT_THAT(filesSetAside(), SizeIs(1));
    EXPECT_EQ(TemporaryDirectory::modeOf(filesSetAside().front()), 0600U);
}

TEST_F(JsonSettings, a_file_of_another_place_keeps_its_mode_when_the_link_to_it_is_set_aside) {
    const std::string elsewhere = directory_.write("elsewhere", "broken");
    std::filesystem::permissions(elsewhere, std::filesystem::perms{0644});
    std::filesystem::create_directories(directory_.path("config/lumaframe"));
    std::filesystem::create_symlink(elsewhere, filePath());
    const auto settings = open();
    ASSERT_THAT(filesSetAside(), SizeIs(1));
    EXPECT_EQ(TemporaryDirectory::modeOf(elsewhere), 0644U);
}

TEST_F(JsonSettings, two_broken_files_within_a_second_are_both_kept) {
    writeFile("one");
    const auto settings = open();
    writeFile("two");
    ASSERT_TRUE(settings->write("playSounds", true));
    EXPECT_THAT(filesSetAside(), SizeIs(2));
}

TEST_F(JsonSettings, a_change_by_another_program_counts_at_the_next_read) {
    const auto settings = open();
    writeFile(R"({"playSounds": false})");
    EXPECT_EQ(settings->read("playSounds"), std::optional<SettingsValue>(false));
    writeFile(R"({"playSounds": true})");
    EXPECT_EQ(settings->read("playSounds"), std::optional<SettingsValue>(true));
    std::filesystem::remove(filePath());
    EXPECT_EQ(settings->read("playSounds"), std::nullopt);
}

TEST_F(JsonSettings, a_file_that_is_deleted_right_after_the_first_write_is_an_empty_store) {
    const auto settings = open();
    ASSERT_TRUE(settings->write("playSounds", false));
    std::filesystem::remove(filePath());
    EXPECT_EQ(settings->read("playSounds"), std::nullopt);
}

TEST_F(JsonSettings, the_handler_gets_every_key_that_changed_and_no_other) {
    writeFile(R"({"same": 1, "changed": 1, "removed": true})");
    const auto settings = open();
    std::vector<std::string> keys;
    settings->setChangeHandler([&keys](const std::string& key) { keys.push_back(key); });
    writeFile(R"({"same": 1, "changed": 2, "added": ""})");
    ASSERT_TRUE(watch_.dispatch());
    queue_.runAll();
    EXPECT_THAT(keys, ElementsAre("added", "changed", "removed"));
}

TEST_F(JsonSettings, the_handler_is_called_when_the_directory_appears_later) {
    std::filesystem::create_directories(directory_.path("config"));
    const auto settings = open();
    std::vector<std::string> keys;
    settings->setChangeHandler([&keys](const std::string& key) { keys.push_back(key); });
    std::filesystem::create_directories(directory_.path("config/lumaframe"));
    ASSERT_TRUE(watch_.dispatch());
    writeFile(R"({"added": 1})");
    ASSERT_TRUE(watch_.dispatch());
    queue_.runAll();
    EXPECT_THAT(keys, ElementsAre("added"));
}

TEST_F(JsonSettings, the_handler_is_not_called_for_writes_of_this_process) {
    const auto settings = open();
    std::vector<std::string> keys;
    settings->setChangeHandler([&keys](const std::string& key) { keys.push_back(key); });
    ASSERT_TRUE(settings->write("playSounds", false));
    watch_.dispatch();
    static_cast<void>(settings->read("playSounds"));
    queue_.runAll();
    EXPECT_THAT(keys, IsEmpty());
}

TEST_F(JsonSettings, a_read_that_sees_the_change_first_calls_the_handler_later_and_once) {
    const auto settings = open();
    int calls = 0;
    settings->setChangeHandler([&calls](const std::string&) { ++calls; });
    writeFile(R"({"playSounds": false})");
    static_cast<void>(settings->read("playSounds"));
    EXPECT_EQ(calls, 0);
    queue_.runAll();
    watch_.dispatch(100);
    queue_.runAll();
    EXPECT_EQ(calls, 1);
}

TEST_F(JsonSettings, a_queued_call_of_the_handler_does_nothing_after_the_end) {
    auto settings = open();
    int calls = 0;
    settings->setChangeHandler([&calls](const std::string&) { ++calls; });
    writeFile(R"({"playSounds": false})");
    static_cast<void>(settings->read("playSounds"));
    settings.reset();
    queue_.runAll();
    EXPECT_EQ(calls, 0);
}

TEST_F(JsonSettings, a_write_keeps_what_another_program_wrote_in_between) {
    const auto settings = open();
    ASSERT_TRUE(settings->write("mine", std::int64_t{1}));
    writeFile(R"({"theirs": 2})");
    ASSERT_TRUE(settings->write("mine", std::int64_t{3}));
    const auto next = open();
    EXPECT_EQ(next->read("theirs"), std::optional<SettingsValue>(std::int64_t{2}));
    EXPECT_EQ(next->read("mine"), std::optional<SettingsValue>(std::int64_t{3}));
}

TEST_F(JsonSettings, a_reader_never_sees_a_part_of_a_write) {
    const auto settings = open();
    ASSERT_TRUE(settings->write("path", std::string(4000, 'a')));
    std::atomic<bool> isOver = false;
    std::atomic<int> broken = 0;
    std::thread reader([&] {
        while (!isOver) {
            const std::string text = file();
            broken += text.size() < 4000 || !text.ends_with("}\n") ? 1 : 0;
        }
    });
    for (int round = 0; round < 100; ++round) {
        ASSERT_TRUE(
            settings->write("path", std::string(4000, static_cast<char>('a' + round % 26))));
    }
    isOver = true;
    reader.join();
    EXPECT_EQ(broken, 0);
}

TEST_F(JsonSettings, a_half_written_file_is_not_set_aside_by_a_read) {
    writeFile(R"({"playSounds": false})");
    const auto settings = open();
    std::ofstream half(filePath(), std::ios::trunc);
    half << R"({"playSounds": tr)" << std::flush;
    EXPECT_EQ(settings->read("playSounds"), std::optional<SettingsValue>(false));
    half << "ue}" << std::flush;
    half.close();
    EXPECT_EQ(settings->read("playSounds"), std::optional<SettingsValue>(true));
    EXPECT_THAT(filesSetAside(), IsEmpty());
}

TEST_F(JsonSettings, a_failed_write_is_an_error_and_the_value_is_readable_here) {
    directory_.write("config", "a file where the directory belongs");
    const auto settings = open();
    const auto status = settings->write("playSounds", false);
    ASSERT_FALSE(status);
    EXPECT_FALSE(status.error().sentence.empty());
    EXPECT_EQ(settings->read("playSounds"), std::optional<SettingsValue>(false));
}

TEST_F(JsonSettings, what_could_not_be_stored_is_stored_with_the_next_write) {
    directory_.write("config", "");
    const auto settings = open();
    ASSERT_FALSE(settings->write("playSounds", false));
    std::filesystem::remove(directory_.path("config"));
    ASSERT_TRUE(settings->write("hideDockIcon", true));
    EXPECT_EQ(open()->read("playSounds"), std::optional<SettingsValue>(false));
}

TEST_F(JsonSettings, what_could_not_be_stored_is_stored_as_soon_as_the_file_can_be_read) {
    writeFile("{}");
    const auto settings = open();
    std::filesystem::remove(filePath());
    ASSERT_EQ(::mkfifo(filePath().c_str(), 0600), 0);
    ASSERT_FALSE(settings->write("playSounds", false));
    directory_.write("config/lumaframe/new", R"({"hideDockIcon":true})");
    std::filesystem::rename(directory_.path("config/lumaframe/new"), filePath());
    while (file().find("playSounds") == std::string::npos) {
        ASSERT_TRUE(watch_.dispatch()) << "Nobody told the program of the new file.";
    }
    EXPECT_EQ(open()->read("playSounds"), std::optional<SettingsValue>(false));
    EXPECT_EQ(open()->read("hideDockIcon"), std::optional<SettingsValue>(true));
}

TEST_F(JsonSettings, a_text_that_is_no_utf8_is_refused_and_harms_nothing_else) {
    const auto settings = open();
    ASSERT_TRUE(settings->write("playSounds", false));
    EXPECT_FALSE(settings->write("screenshotSavePath", std::string("/tmp/\xff")));
    EXPECT_EQ(settings->read("screenshotSavePath"), std::optional<SettingsValue>("/tmp/\xff"));
    ASSERT_TRUE(settings->write("playSounds", true));
    EXPECT_EQ(open()->read("playSounds"), std::optional<SettingsValue>(true));
}

TEST_F(JsonSettings, a_fifo_in_its_place_blocks_nobody_and_is_not_replaced) {
    std::filesystem::create_directories(directory_.path("config/lumaframe"));
    ASSERT_EQ(::mkfifo(filePath().c_str(), 0600), 0);
    const auto settings = open();
    EXPECT_EQ(settings->read("playSounds"), std::nullopt);
    EXPECT_FALSE(settings->write("playSounds", false));
    EXPECT_EQ(settings->read("playSounds"), std::optional<SettingsValue>(false));
    EXPECT_THAT(log_.lines, SizeIs(1));
    EXPECT_TRUE(std::filesystem::is_fifo(filePath()));
}

TEST_F(JsonSettings, a_link_to_the_file_stays_a_link) {
    const std::string target = directory_.write("dotfiles/settings.json", R"({"a": 1})");
    std::filesystem::create_directories(directory_.path("config/lumaframe"));
    std::filesystem::create_symlink(target, filePath());
    ASSERT_TRUE(open()->write("b", true));
    EXPECT_TRUE(std::filesystem::is_symlink(filePath()));
    EXPECT_THAT(directory_.read("dotfiles/settings.json"), HasSubstr("\"b\": true"));
}

TEST_F(JsonSettings, a_value_that_is_stored_already_is_not_written_again) {
    const auto settings = open();
    ASSERT_TRUE(settings->write("playSounds", false));
    const auto before = std::filesystem::last_write_time(filePath());
    ASSERT_TRUE(settings->write("playSounds", false));
    EXPECT_EQ(std::filesystem::last_write_time(filePath()), before);
}

TEST_F(JsonSettings, without_a_configuration_directory_values_last_for_this_process) {
    const auto settings =
        JsonSettingsBackend::create(XdgDirectories(), log_, queue_, watch_.function());
    EXPECT_FALSE(settings->write("playSounds", false));
    EXPECT_EQ(settings->read("playSounds"), std::optional<SettingsValue>(false));
}

}  // namespace
