#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "base/file_manager.h"

namespace contracts {

/// A file manager together with the files it sees.
class FileManagerWorld {
  public:
    virtual ~FileManagerWorld() = default;
    virtual base::FileManager& manager() = 0;
    /// A folder that exists and can be written to.
    virtual std::string folder() = 0;
    virtual void makeFolder(const std::string& path) = 0;
    /// What a file holds; "no file" where there is none.
    virtual std::string contents(const std::string& path) = 0;
};

using MakeFileManagerWorld = std::function<std::unique_ptr<FileManagerWorld>()>;

/// What every file manager does, whatever is behind it.
class FileManagerContract : public testing::TestWithParam<MakeFileManagerWorld> {
  protected:
    std::unique_ptr<FileManagerWorld> world_ = GetParam()();
};

}  // namespace contracts
