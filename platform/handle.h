// An owning, move-only wrapper for one platform handle.
#pragma once

#include <utility>

namespace platform {

// Traits give: `Type` (a trivially copyable handle), `static constexpr Type none()` (the value that means "no
// handle") and `static void close(Type) noexcept` (called once for every owned handle). Closing failures are
// ignored.
template <class Traits>
class [[nodiscard]] UniqueHandle {
  public:
    using Type = typename Traits::Type;

    UniqueHandle() noexcept = default;
    explicit UniqueHandle(Type handle) noexcept : handle_(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.release()) {}
    // Closes what this object held before it takes the other's handle; moving onto itself changes nothing.
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    ~UniqueHandle() { reset(); }

    Type get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != Traits::none(); }

    // Gives the handle away without closing it.
    [[nodiscard]] Type release() noexcept { return std::exchange(handle_, Traits::none()); }

    // Closes the held handle, if any, and takes `handle`.
    void reset(Type handle = Traits::none()) noexcept {
        const Type old = std::exchange(handle_, handle);
        if (old != Traits::none())
            Traits::close(old);
    }

  private:
    Type handle_ = Traits::none();
};

}  // namespace platform
