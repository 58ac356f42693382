// A field that is empty in almost every record: it takes one word until it is written.
#pragma once

#include <memory>

namespace cubenet {

template <typename T> class Rare {
public:
  Rare() = default;
  explicit Rare(T value) : own_(std::make_unique<T>(std::move(value))) {}
  Rare(Rare &&) noexcept = default;
  Rare &operator=(Rare &&) noexcept = default;
  Rare(const Rare &other) : own_(other.own_ ? std::make_unique<T>(*other.own_) : nullptr) {}
  Rare &operator=(const Rare &other) { return *this = Rare(other); }

  const T &operator*() const {
    static const T kEmpty{};
    return own_ ? *own_ : kEmpty;
  }
  const T *operator->() const { return &**this; }

  T &writable() {
    if (!own_) own_ = std::make_unique<T>();
    return *own_;
  }

private:
  std::unique_ptr<T> own_; // null: an empty value
};

} // namespace cubenet
