// Buttons for goods without a bar code, in pages beside the lines of a sale. A shop that
// has put no article on them does not see them.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/form.h"

namespace tpv {

class Connection;

inline constexpr std::size_t kKeyPages = 12;
inline constexpr std::size_t kKeysOfPage = 6;
inline constexpr int kKeyText = 12;  // characters

class QuickKeys {
 public:
  // `press` gets the code of the article whose key was pressed. The form outlives them.
  QuickKeys(ui::Form& form, std::function<void(const std::string& code)> press);

  // As the store has them now; the page that was shown stays where it is still there.
  // Throws DatabaseError.
  void Read(Connection& connection);

  ui::Frame frame;

 private:
  struct Key {
    std::string text;
    std::string code;
  };
  struct Page {
    std::string name;
    std::vector<Key> keys;
  };

  std::unique_ptr<ui::Button> MakeButton(const char* name, std::size_t number);
  // Pages that have a button at once; the last button goes on to the others.
  std::size_t PagesAtOnce() const;
  void ChoosePage(std::size_t button);
  void ShowPage(std::size_t page);
  void Press(std::size_t key);

  ui::Form& form_;
  std::function<void(const std::string& code)> press_;
  std::vector<Page> pages_;
  std::size_t page_ = 0;
  std::vector<std::unique_ptr<ui::Button>> page_buttons_;
  std::vector<std::unique_ptr<ui::Button>> key_buttons_;
};

}  // namespace tpv
