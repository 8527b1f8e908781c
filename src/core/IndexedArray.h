#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "core/RunTimeError.h"

namespace vantor {

/// A fixed array with the index range First to Last; any other index is error 9.
template <class Element, int First, int Last>
class IndexedArray {
public:
    static constexpr int FirstIndex = First;
    static constexpr int LastIndex = Last;
    static constexpr std::size_t Count = Last - First + 1;

    Element& operator[](int index) { return elements_[Checked(index)]; }
    const Element& operator[](int index) const { return elements_[Checked(index)]; }
    auto begin() { return elements_.begin(); }
    auto end() { return elements_.end(); }
    auto begin() const { return elements_.begin(); }
    auto end() const { return elements_.end(); }
    bool operator==(const IndexedArray&) const = default;

private:
    static std::size_t Checked(int index) {
        if (index < First || index > Last) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
        return static_cast<std::size_t>(index - First);
    }
    std::array<Element, Count> elements_{};
};

/// A growable list with the index range First to LastIndex(); any other index is error 9.
template <class Element, int First>
class IndexedList {
public:
    IndexedList() = default;
    explicit IndexedList(std::vector<Element> elements) : elements_(std::move(elements)) {}

    int LastIndex() const { return First - 1 + static_cast<int>(elements_.size()); }
    bool IsEmpty() const { return elements_.empty(); }
    void Clear() { elements_.clear(); }
    /// New elements are empty ones; elements behind the new last index are dropped.
    void ResizeTo(int lastIndex) { elements_.resize(static_cast<std::size_t>(lastIndex) + 1 - First); }
    void Append(Element element) { elements_.push_back(std::move(element)); }
    /// Before the element of that index; behind the last one with LastIndex() + 1.
    void Insert(int index, Element element) {
        const std::size_t at = index == LastIndex() + 1 ? elements_.size() : Checked(index);
        elements_.insert(elements_.begin() + static_cast<std::ptrdiff_t>(at), std::move(element));
    }
    void Remove(int index) { elements_.erase(elements_.begin() + static_cast<std::ptrdiff_t>(Checked(index))); }

    Element& operator[](int index) { return elements_[Checked(index)]; }
    const Element& operator[](int index) const { return elements_[Checked(index)]; }
    Element* data() { return elements_.data(); }
    const Element* data() const { return elements_.data(); }
    std::size_t size() const { return elements_.size(); }
    auto begin() { return elements_.begin(); }
    auto end() { return elements_.end(); }
    auto begin() const { return elements_.begin(); }
    auto end() const { return elements_.end(); }
    bool operator==(const IndexedList&) const = default;

private:
    std::size_t Checked(int index) const {
        if (index < First || index > LastIndex()) throw RunTimeError(ErrorNumber::SubscriptOutOfRange);
        return static_cast<std::size_t>(index - First);
    }
    std::vector<Element> elements_;
};

/// Samples, runs and names of a study count from 1.
template <class Element>
using OneBased = IndexedList<Element, 1>;
/// The entries of a study: entry 0 is no run but takes the grade of the study's average.
template <class Element>
using ZeroBased = IndexedList<Element, 0>;

}  // namespace vantor
