// The texts that a combo offers. They never change, so copies share them: a list of
// the store that thousands of forms show is in memory once.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tpv::ui {

class Entries {
 public:
  Entries() = default;
  explicit Entries(std::vector<std::string> texts)
      : texts_(std::make_shared<const std::vector<std::string>>(std::move(texts))) {}

  bool empty() const { return texts_->empty(); }
  std::size_t size() const { return texts_->size(); }
  const std::string& operator[](std::size_t index) const { return (*texts_)[index]; }
  const std::string& at(std::size_t index) const { return texts_->at(index); }
  auto begin() const { return texts_->begin(); }
  auto end() const { return texts_->end(); }

  bool operator==(const Entries& other) const {
    return texts_ == other.texts_ || *texts_ == *other.texts_;
  }

 private:
  static std::shared_ptr<const std::vector<std::string>> None() {
    static const auto none = std::make_shared<const std::vector<std::string>>();
    return none;
  }

  std::shared_ptr<const std::vector<std::string>> texts_ = None();
};

}  // namespace tpv::ui
