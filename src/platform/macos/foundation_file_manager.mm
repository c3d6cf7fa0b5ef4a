#include "platform/macos/foundation_file_manager.h"

#import <Foundation/Foundation.h>
#include <sys/stat.h>

#include "platform/macos/foundation_error.h"
#include "platform/macos/foundation_text.h"

namespace platform::macos {

namespace {

/// Writing into a pipe that nobody reads would never end.
bool isPipe(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
}

NSURL* fileFrom(const std::string& path) {
    return [NSURL fileURLWithPath:stringFrom(path)];
}

}  // namespace

std::vector<std::string> FoundationFileManager::downloadsDirectories() const {
    std::vector<std::string> paths;
    NSArray<NSURL*>* const urls =
        [NSFileManager.defaultManager URLsForDirectory:NSDownloadsDirectory
                                             inDomains:NSUserDomainMask];
    for (NSURL* url in urls) {
        paths.push_back(textFrom(url.path));
    }
    return paths;
}

bool FoundationFileManager::isReadableFolder(const std::string& path) const {
    NSFileManager* const manager = NSFileManager.defaultManager;
    BOOL isFolder = NO;
    return [manager fileExistsAtPath:stringFrom(path) isDirectory:&isFolder] && isFolder &&
           [manager isReadableFileAtPath:stringFrom(path)];
}

base::Status FoundationFileManager::write(const std::string& path,
                                          std::span<const std::uint8_t> bytes) {
    if (isPipe(path)) {
        return base::Error{base::ErrorKind::invalid, path + " is not a file."};
    }
    NSData* const data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
    NSError* error = nil;
    if (![data writeToURL:fileFrom(path) options:0 error:&error]) {
        return localizedError(error);
    }
    return base::Nothing{};
}

base::Status FoundationFileManager::writeTextAtomically(const std::string& path,
                                                        std::string_view text) {
    NSError* error = nil;
    if (![stringFrom(std::string(text)) writeToURL:fileFrom(path)
                                        atomically:YES
                                          encoding:NSUTF8StringEncoding
                                             error:&error]) {
        return localizedError(error);
    }
    return base::Nothing{};
}

}  // namespace platform::macos
