// A short list that is written in a window: its rows, fields for one of them, and buttons
// to add, change and take away.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/ui/form.h"

namespace tpv::office {

class ListEditor {
 public:
  struct Column {
    const char* caption;
    int columns;  // width in characters
    std::vector<std::string> choices{};  // empty: any text
  };

  // Its controls are named after `name` ("lstFormas", "txtFormas(0)"). The form outlives it.
  ListEditor(ui::Form& form, const std::string& name, std::vector<Column> columns);

  // For the layout, top to bottom.
  std::vector<std::vector<ui::Control*>> Rows();
  ui::Control& list() { return list_; }
  const std::string& Label() const { return list_.layout.front().caption; }
  using Cells = std::vector<std::string>;
  void Set(std::vector<Cells> rows);
  // What is typed and was not added counts for a list that would be empty.
  std::vector<Cells> Get() const;
  // Rows with their cells joined by "; ".
  void SetJoined(const std::vector<std::string>& rows);
  std::vector<std::string> GetJoined() const;
  void Select(std::size_t row);
  // Where the operator goes on when the list is not right.
  ui::Control& Place() { return list_.items.empty() ? *fields_.front() : list_; }
  // Why the list is not what the operator means: something is typed that no row holds.
  // "" when nothing is.
  std::string Unadded() const;

 private:
  std::vector<std::string> Typed() const;
  void ShowRow(int row);
  void Add();
  void Change();
  void Remove();

  ui::ListView list_;
  std::vector<std::unique_ptr<ui::Control>> fields_;
  ui::Button add_, change_, remove_;
};

}  // namespace tpv::office
