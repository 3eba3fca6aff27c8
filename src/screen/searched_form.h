// What a search shows now, as a list that leaves the till as any other.
#pragma once

#include "platform/ui/form.h"
#include "screen/search_list.h"

namespace tpv::ui {

class SearchedForm : public Form {
 public:
  // `over`: the form that asks; null, or one whose lists stay with it, for none. It
  // outlives this, as the list does.
  SearchedForm(const SearchList& list, Form* over);

  Grid found{*this, "Coincidencias"};  // its rows come when they are taken away
  void Fill();

  bool GivesListsAway() const override { return over_ != nullptr && over_->GivesListsAway(); }
  void ExportList(List& list, const std::string& path) override {
    Fill();
    over_->ExportList(list, path);
  }
  void PrintList(List& list, ListPaper paper) override {
    Fill();
    over_->PrintList(list, paper);
  }

 private:
  const SearchList& list_;
  Form* over_;
};

}  // namespace tpv::ui
