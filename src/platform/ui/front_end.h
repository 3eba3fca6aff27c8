// The port to whatever shows forms: real windows, or a scenario without any.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/variant.h"
#include "platform/notice.h"
#include "platform/ui/long_work.h"
#include "platform/ui/packed_rows.h"

namespace tpv::ui {

class Form;

enum class Icon { None, Information, Question, Exclamation, Critical };
enum class Answer { Ok, Yes, No, Cancel };

struct MessageBox {
  std::string text;  // lines joined by CR LF
  Icon icon = Icon::None;
  std::vector<Answer> buttons = {Answer::Ok};
  Answer default_button = Answer::Ok;
  std::string title;
};

// The button's caption, its letter marked: a letter alone answers a box.
std::string_view CaptionOf(Answer answer);
// The answer that a typed letter gives; nullopt when it is none of the box's.
std::optional<Answer> AnswerTo(const MessageBox& box, char32_t letter);
// What a box that closes unanswered counts as: the button that goes on with least.
Answer Harmless(const MessageBox& box);

// A list to choose one row from, narrowed as one types.
struct SearchRequest {
  std::string title;
  std::vector<std::string> captions;        // of the shown columns
  std::vector<int> widths;                  // twips
  std::vector<std::size_t> shown_columns;   // indices into a row
  std::vector<std::string> masks;           // of the shown columns; "" or missing: a text
  std::size_t search_column = 0;            // index into a row
  PackedRows rows;                          // in the order to show
  // Adds a few more rows; false when these were the last. Null: all are there already.
  std::function<bool()> read_on;

  // Whether a shown column is an amount: on the right by its mask, and not searched.
  bool IsFigure(std::size_t column) const { return column < masks.size() && !masks[column].empty(); }
};

// A file or folder to point at.
struct FileQuestion {
  enum class Kind { Existing, New, Folder };
  std::string title;
  std::string kinds;    // "Almacenes (*.db)"
  std::string current;  // where to begin
  Kind kind = Kind::Existing;
};

class FrontEnd {
 public:
  virtual ~FrontEnd() = default;

  // Loads the form (OnLoad) when it is not loaded yet, shows it on top and
  // returns when it is closed. An error of OnLoad goes to the caller and the
  // form is not shown.
  virtual void ShowModal(Form& form) = 0;
  // Loads the form without showing it, so that its caller can fill it first.
  virtual void Load(Form& form) = 0;
  virtual Answer Show(const MessageBox& box) = 0;
  // The chosen row's index in request.rows, nullopt when closed without one. Rows that are
  // not there yet are read while it is open; what that throws passes.
  virtual std::optional<std::size_t> Search(SearchRequest& request) = 0;
  // Its path, "" when nothing was chosen or there is nobody to point at one.
  virtual std::string ChooseFile(const FileQuestion& /*question*/) { return {}; }
  // Stands in every title and first in every band from now on; "" for nothing.
  virtual void SetBanner(std::string_view banner) = 0;
  // Opens a page of the operator's manual ("venta"; "" for its contents) in a window of
  // its own and returns at once.
  virtual void ShowManual(std::string_view page) = 0;
  // Lets the window system repaint: called inside long work.
  virtual void ProcessEvents() = 0;
  // Long work has come so far, so long after it began: shown once it has lasted, and the
  // window system goes on meanwhile. True when the operator wants to give it up. Called
  // in the middle of statements: no handler of a form runs inside.
  virtual bool ShowProgress(const Progress& progress, std::chrono::milliseconds lasted) = 0;
  virtual void EndProgress() = 0;
  // Tells the operator at the next moment that takes nothing from what is being typed.
  // The one member that any thread may call.
  virtual void Notify(const Notice& notice) = 0;
};

}  // namespace tpv::ui
