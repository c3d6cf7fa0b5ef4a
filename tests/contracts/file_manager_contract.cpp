#include "contracts/file_manager_contract.h"

#include <vector>

namespace contracts {
namespace {

std::vector<std::uint8_t> bytes(const std::string& text) {
    return {text.begin(), text.end()};
}

TEST_P(FileManagerContract, a_write_makes_a_file_of_the_very_bytes) {
    const std::string path = world_->folder() + "/Größe 1.png";
    const std::string content("\0\xFF\r\n", 4);
    EXPECT_TRUE(world_->manager().write(path, bytes(content)));
    EXPECT_EQ(world_->contents(path), content);
}

TEST_P(FileManagerContract, a_write_replaces_what_was_there) {
    const std::string path = world_->folder() + "/a.png";
    EXPECT_TRUE(world_->manager().write(path, bytes("something longer")));
    EXPECT_TRUE(world_->manager().write(path, bytes("new")));
    EXPECT_EQ(world_->contents(path), "new");
}

TEST_P(FileManagerContract, a_text_replaces_what_was_there) {
    const std::string path = world_->folder() + "/a.txt";
    EXPECT_TRUE(world_->manager().writeTextAtomically(path, "something longer"));
    EXPECT_TRUE(world_->manager().writeTextAtomically(path, "neu: ß"));
    EXPECT_EQ(world_->contents(path), "neu: ß");
}

TEST_P(FileManagerContract, an_empty_file_is_a_file) {
    const std::string path = world_->folder() + "/a.txt";
    EXPECT_TRUE(world_->manager().writeTextAtomically(path, ""));
    EXPECT_EQ(world_->contents(path), "");
}

TEST_P(FileManagerContract, a_folder_that_does_not_exist_is_not_made) {
    const std::string path = world_->folder() + "/gone/a.png";
    const base::Status written = world_->manager().write(path, bytes("x"));
    const base::Status writtenText = world_->manager().writeTextAtomically(path, "x");
    ASSERT_FALSE(written);
    ASSERT_FALSE(writtenText);
    EXPECT_EQ(written.error().kind, base::ErrorKind::notFound);
    EXPECT_FALSE(written.error().sentence.empty());
    EXPECT_FALSE(writtenText.error().sentence.empty());
    EXPECT_EQ(world_->contents(path), "no file");
    EXPECT_FALSE(world_->manager().isReadableFolder(world_->folder() + "/gone"));
}

TEST_P(FileManagerContract, a_folder_is_not_replaced_by_a_file) {
    const std::string path = world_->folder() + "/folder";
    world_->makeFolder(path);
    EXPECT_FALSE(world_->manager().write(path, bytes("x")));
    EXPECT_FALSE(world_->manager().writeTextAtomically(path, "x"));
    EXPECT_TRUE(world_->manager().isReadableFolder(path));
}

TEST_P(FileManagerContract, a_path_with_a_zero_byte_is_not_cut_off_there) {
    const std::string path = world_->folder() + "/a";
    const std::string longer = path + std::string("\0b.png", 6);
    const base::Status written = world_->manager().write(longer, bytes("x"));
    const base::Status writtenText = world_->manager().writeTextAtomically(longer, "x");
    ASSERT_FALSE(written);
    ASSERT_FALSE(writtenText);
    EXPECT_EQ(written.error().kind, base::ErrorKind::invalid);
    EXPECT_EQ(writtenText.error().kind, base::ErrorKind::invalid);
    EXPECT_FALSE(written.error().sentence.empty());
    EXPECT_FALSE(writtenText.error().sentence.empty());
    EXPECT_EQ(world_->contents(path), "no file");
    EXPECT_FALSE(world_->manager().isReadableFolder(world_->folder() + std::string("\0b", 2)));
}

TEST_P(FileManagerContract, a_folder_is_readable_and_neither_nothing_nor_a_file_is_a_folder) {
    const std::string path = world_->folder() + "/a.png";
    EXPECT_TRUE(world_->manager().isReadableFolder(world_->folder()));
    EXPECT_FALSE(world_->manager().isReadableFolder(path));
    ASSERT_TRUE(world_->manager().write(path, bytes("x")));
    EXPECT_FALSE(world_->manager().isReadableFolder(path));
}

}  // namespace
}  // namespace contracts
