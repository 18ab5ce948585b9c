// A counted reference to a COM object.
#pragma once

#include <windows.h>

#include <utility>

namespace vantora::excel {

// Owns one reference to a `T`, or none. Copying takes another reference.
template <typename T>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(const ComPtr& other) : ComPtr(Share(other.object_)) {}
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPtr() {
    if (object_) object_->Release();
  }

  // Takes over a reference that the caller owns.
  static ComPtr Adopt(T* object) {
    ComPtr pointer;
    pointer.object_ = object;
    return pointer;
  }
  // Takes a reference of its own; null gives an empty pointer.
  static ComPtr Share(T* object) {
    if (object) object->AddRef();
    return Adopt(object);
  }

  explicit operator bool() const { return object_ != nullptr; }
  T* get() const { return object_; }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }
  // Where a call stores the reference that it hands out. The pointer must be empty.
  T** Receive() { return &object_; }

  // The object's interface `Other`; empty when it has none.
  template <typename Other>
  ComPtr<Other> As() const {
    ComPtr<Other> other;
    if (object_) {
      object_->QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.Receive()));
    }
    return other;
  }

 private:
  T* object_ = nullptr;
};

}  // namespace vantora::excel
