#pragma once

#include <utility>

namespace platform::helper {

/// A file descriptor that is closed with its owner. Any thread.
class OwnedDescriptor {
  public:
    OwnedDescriptor() = default;
    /// Takes `number` over; negative for none.
    explicit OwnedDescriptor(int number) : number_(number) {}
    OwnedDescriptor(OwnedDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept {
        if (this != &other) {
            close();
            number_ = std::exchange(other.number_, -1);
        }
        return *this;
    }
    OwnedDescriptor(const OwnedDescriptor&) = delete;
    OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;
    ~OwnedDescriptor() { close(); }

    [[nodiscard]] int number() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }

  private:
    void close();

    int number_ = -1;
};

}  // namespace platform::helper
