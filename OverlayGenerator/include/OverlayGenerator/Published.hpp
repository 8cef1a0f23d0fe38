#pragma once

// A value that announces every change to its observers before the change
// takes effect, so an observer still reads the old value through the owner
// and receives the new one as its argument:
//
//     Published<Size> size{Size(400, 300, 10)};
//     auto token = size.subscribe([](const Size& next) { ... });
//     size.set(Size(800, 600, 10));   // observer runs, then the value changes
//     size.unsubscribe(token);
//
// Observers run synchronously on the thread that calls set(), in the order
// they subscribed. There is no locking: like the document that owns it, a
// Published belongs to one thread at a time. Copying or moving takes the
// value only when assigning (announced like set()); a new Published made by
// copying starts without observers, one made by moving takes them along.

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace vantel {

template <class T>
class Published {
public:
    using Observer = std::function<void(const T& newValue)>;
    using Subscription = std::uint64_t;

    explicit Published(T value) : value_(std::move(value)) {}
    Published(const Published& other) : value_(other.value_) {}
    Published& operator=(const Published& other) {
        set(other.value_);
        return *this;
    }
    Published(Published&&) = default;
    Published& operator=(Published&& other) {
        set(std::move(other.value_));
        return *this;
    }

    const T& get() const { return value_; }

    void set(T newValue) {
        auto current = observers_;  // an observer may unsubscribe while being told
        for (const auto& entry : current) entry.second(newValue);
        value_ = std::move(newValue);
    }

    Subscription subscribe(Observer observer) {
        Subscription token = ++lastToken_;
        observers_.emplace_back(token, std::move(observer));
        return token;
    }

    void unsubscribe(Subscription token) {
        std::erase_if(observers_, [token](const auto& entry) { return entry.first == token; });
    }

private:
    T value_;
    std::vector<std::pair<Subscription, Observer>> observers_;
    Subscription lastToken_ = 0;
};

}  // namespace vantel
