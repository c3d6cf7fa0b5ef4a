#include "contracts/settings_backend_contract.h"

#include <gmock/gmock.h>

#include <limits>
#include <vector>

namespace contracts {
namespace {

using app::SettingsValue;
using testing::Each;
using testing::IsEmpty;
using testing::Not;

TEST_P(SettingsBackendContract, a_key_that_was_never_written_is_absent) {
    EXPECT_EQ(backend_.read("key"), std::nullopt);
}

TEST_P(SettingsBackendContract, each_value_comes_back_with_its_type) {
    const std::vector<SettingsValue> values{true,
                                            false,
                                            std::int64_t{0},
                                            std::int64_t{1},
                                            std::numeric_limits<std::int64_t>::min(),
                                            std::numeric_limits<std::int64_t>::max(),
                                            std::string(),
                                            std::string("/home/Größe \"und\" Maß\n📷")};
    for (const SettingsValue& value : values) {
        EXPECT_TRUE(backend_.write("key", value));
        EXPECT_EQ(backend_.read("key"), value);
    }
}

TEST_P(SettingsBackendContract, keys_are_told_apart_by_case) {
    EXPECT_TRUE(backend_.write("key", true));
    EXPECT_EQ(backend_.read("Key"), std::nullopt);
}

TEST_P(SettingsBackendContract, a_value_that_another_program_wrote_is_read_and_told) {
    std::vector<std::string> told;
    backend_.setChangeHandler([&](const std::string& key) { told.push_back(key); });
    EXPECT_TRUE(backend_.write("mine", true));
    world_->changeFromOutside("theirs", true);
    EXPECT_EQ(backend_.read("theirs"), SettingsValue(true));
    EXPECT_THAT(told, Not(IsEmpty()));
    EXPECT_THAT(told, Each("theirs"));
}

TEST_P(SettingsBackendContract, a_value_that_another_program_deleted_is_absent_and_told) {
    EXPECT_TRUE(backend_.write("key", true));
    std::vector<std::string> told;
    backend_.setChangeHandler([&](const std::string& key) { told.push_back(key); });
    world_->changeFromOutside("key", std::nullopt);
    EXPECT_EQ(backend_.read("key"), std::nullopt);
    EXPECT_THAT(told, Each("key"));
    EXPECT_THAT(told, Not(IsEmpty()));
}

TEST_P(SettingsBackendContract, a_handler_that_was_taken_back_is_not_called) {
    int calls = 0;
    backend_.setChangeHandler([&](const std::string&) { ++calls; });
    backend_.setChangeHandler({});
    world_->changeFromOutside("key", true);
    EXPECT_EQ(backend_.read("key"), SettingsValue(true));
    EXPECT_EQ(calls, 0);
}

TEST_P(SettingsBackendContract, a_value_that_the_medium_refused_still_holds_in_this_process) {
    world_->breakMedium();
    const base::Status written = backend_.write("key", std::int64_t{18});
    ASSERT_FALSE(written);
    EXPECT_FALSE(written.error().sentence.empty());
    EXPECT_EQ(backend_.read("key"), SettingsValue(std::int64_t{18}));
}

}  // namespace
}  // namespace contracts
