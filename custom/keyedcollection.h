#pragma once

#include <QList>
#include <QString>
#include <utility>

namespace tarvel {

// A collection addressed by 1-based position or by an optional text key, in
// the order items were added; enumerating yields the items.
template <typename T>
class KeyedCollection {
public:
    // The key is used only when it is not empty; false when it is taken.
    bool Add(const T& item, const QString& key = QString()) {
        if (!key.isEmpty() && Item(key)) return false;
        items_.append({key, item});
        return true;
    }
    T& Item(int index) { return items_[index - 1].second; }
    const T& Item(int index) const { return items_[index - 1].second; }
    // Null when no item has the key.
    T* Item(const QString& key) {
        if (key.isEmpty()) return nullptr;
        for (auto& [k, item] : items_)
            if (k == key) return &item;
        return nullptr;
    }
    int Count() const { return int(items_.size()); }
    void Remove(int index) { items_.removeAt(index - 1); }
    void clear() { items_.clear(); }

    class const_iterator {
    public:
        using Base = typename QList<std::pair<QString, T>>::const_iterator;
        explicit const_iterator(Base it) : it_(it) {}
        const T& operator*() const { return it_->second; }
        const T* operator->() const { return &it_->second; }
        const_iterator& operator++() {
            ++it_;
            return *this;
        }
        bool operator!=(const const_iterator& o) const { return it_ != o.it_; }

    private:
        Base it_;
    };
    const_iterator begin() const { return const_iterator(items_.cbegin()); }
    const_iterator end() const { return const_iterator(items_.cend()); }

private:
    QList<std::pair<QString, T>> items_;
};

}  // namespace tarvel
