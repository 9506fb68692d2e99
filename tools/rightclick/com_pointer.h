// Owning pointers to COM interfaces.
#pragma once

#include "platform/com.h"
#include "platform/handle.h"

namespace rightclick {

template <class Interface>
struct ComTraits {
    using Type = Interface*;
    static constexpr Type none() { return nullptr; }
    static void close(Type object) noexcept { object->Release(); }
};
template <class Interface>
using ComPointer = platform::UniqueHandle<ComTraits<Interface>>;

// Where a call puts the interface that it hands out: `call(..., receive(pointer))`. The pointer owns it once
// the statement is over.
template <class Interface>
class Receiver {
  public:
    explicit Receiver(ComPointer<Interface>& target) : target_(target) {}
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;
    ~Receiver() { target_.reset(received_); }

    operator Interface**() { return &received_; }
    operator void**() { return reinterpret_cast<void**>(&received_); }

  private:
    ComPointer<Interface>& target_;
    Interface* received_ = nullptr;
};

template <class Interface>
Receiver<Interface> receive(ComPointer<Interface>& target) {
    return Receiver<Interface>(target);
}

}  // namespace rightclick
