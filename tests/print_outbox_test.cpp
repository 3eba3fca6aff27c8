// What printers did not print: kept through faults, printed once, by whichever program takes it first.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include "adapters/files/outbox_folder.h"
#include "host/printer_trial.h"
#include "tests/paper_fixture.h"

namespace tpv {
namespace {

class Outbox : public Paper {
 protected:
  Outbox() {
    folder.Program("lpoptions", "echo printer-state=3");
    folder.Program("lp", "exit 1");
    machine.settings.Write("TPV", "Printers", "Barra", "page:Rota");
    machine.settings.Write("TPV", "Paper", "Default", "Barra");
  }
  static std::vector<UnprintedDocument> Listed(Machine& at) { return at.printers.Outbox()->List(); }
  std::vector<std::string> Kept() const {
    std::vector<std::string> files = folder.Files(".pendiente");
    for (std::string& file : folder.Files(".dudoso")) files.push_back(std::move(file));
    return files;
  }
  void WaitFor(const char* file) const {
    for (int i = 0; i < 500 && folder.Text(file) == "(none)"; ++i) ::usleep(10'000);
  }
};

TEST_F(Outbox, WhatWasNotPrintedIsPrintedTheSameByALaterProgramOnAnotherPrinter) {
  const auto print = [](Machine& at) {
    const auto document = at.printers.Begin("Ticket 1");
    document->SetFont("Courier New", 10.5, true);
    document->PrintLine("Peña  5,00 €\r\n");
    document->SetY(document->Y() - 0.3);
    document->SetFont("Courier New", 9, false);
    document->PrintLine("fin");
    if (at.digest) document->PrintCode("https://example.org/?a=1&b=ñ");
    document->End();
  };
  print(machine);
  const std::string told = Told();
  ASSERT_EQ(folder.Files(".txt").size(), 1U);
  EXPECT_EQ(told.find("«Ticket 1» no se ha impreso en «Barra». La cola «Rota» no acepta el documento. Está guardado en " +
                      folder / "data/tpv/tickets/"), 0U) << told;
  EXPECT_TRUE(told.ends_with(". Se puede imprimir desde «Sin imprimir» (F8).\n")) << told;
  ASSERT_EQ(Kept().size(), 1U);
  EXPECT_EQ(ModeOf(Kept()[0]), 0600);
  EXPECT_EQ(ModeOf(folder / "data/tpv/sin-imprimir"), 0700);
  Machine later;
  ASSERT_EQ(Listed(later).size(), 1U);
  const UnprintedDocument kept = Listed(later)[0];
  EXPECT_EQ(kept.title + "|" + kept.printer + "|" + kept.why, "Ticket 1|Barra|La cola «Rota» no acepta el documento");
  EXPECT_FALSE(kept.maybe_printed);
  later.printers.Outbox()->Print(kept.id, kFolderPrinter);
  later.Finish();
  EXPECT_TRUE(Kept().empty());
  later.printers.SetCurrent(kFolderPrinter);
  print(later);
  later.Finish();
  const auto texts = folder.Files(".txt");
  ASSERT_EQ(texts.size(), 3U);
  EXPECT_NE(ReadFile(texts[0])->find("Peña"), std::string::npos);
  for (const std::string& text : texts) EXPECT_EQ(*ReadFile(text), *ReadFile(texts[0])) << text;
  // A printer that the settings spoil fails at once, and the document comes back.
  machine.settings.Write("TPV", "Printers", "Mala", "lasser");
  machine.printers.SetCurrent("Mala");
  EXPECT_NE(ErrorOf([&] { PrintLines({"x"}); }), "");
  EXPECT_NE(ErrorOf([&] { machine.printers.Outbox()->Print(Listed(machine).at(0).id, "Mala"); }), "");
  machine.printers.Outbox()->Forget(Listed(machine).at(0).id);
  EXPECT_TRUE(Kept().empty());
  machine.printers.SetCurrent(kFolderPrinter);
  PrintLines({"x"}, "");  // nobody misses it
  EXPECT_EQ(Told(), "");
  PrintTrial(machine.printers, machine.settings, machine.clock, "Barra");  // told of, and done with
  const std::string of_trial = Told();
  EXPECT_EQ(of_trial.find("«Prueba de impresión» no se ha impreso en «Barra»"), 0U) << of_trial;
  EXPECT_EQ(of_trial.find("Sin imprimir"), std::string::npos) << of_trial;
  EXPECT_TRUE(Kept().empty());
}

TEST_F(Outbox, AProgramKilledWhileItPrintsLeavesADoubtAndOneInHandIsNobodyElses) {
  folder.Program("lp", "cat > /dev/null; echo x > $FOLDER/began; sleep 5");
  const pid_t other = ::fork();
  if (other == 0) {
    Machine dying;
    const auto document = dying.printers.Begin("Ticket 1");
    document->PrintLine("x");
    document->End();
    ::sleep(60);
    ::_exit(0);
  }
  WaitFor("began");
  EXPECT_TRUE(Listed(machine).empty());
  ASSERT_EQ(Kept().size(), 1U);
  const std::string id = std::filesystem::path(Kept()[0]).filename();
  EXPECT_NE(ErrorOf([&] { machine.printers.Outbox()->Print(id, ""); }), "");
  EXPECT_NE(ErrorOf([&] { machine.printers.Outbox()->Forget(id); }), "");
  ::kill(other, SIGKILL);
  ::waitpid(other, nullptr, 0);
  ASSERT_EQ(Listed(machine).size(), 1U);
  EXPECT_TRUE(Listed(machine)[0].maybe_printed);

  // Of two windows one takes it, and what it printed is nobody's any more.
  folder.Program("lp", "cat > /dev/null; echo x >> $FOLDER/printed; sleep 0.3");
  Machine second;
  machine.printers.Outbox()->Print(id, "Barra");
  EXPECT_NE(ErrorOf([&] { second.printers.Outbox()->Print(id, "Barra"); }), "");
  EXPECT_EQ(Told(), "");
  EXPECT_NE(ErrorOf([&] { second.printers.Outbox()->Print(id, "Barra"); }), "");
  EXPECT_EQ(folder.Text("printed"), "x\n");
  EXPECT_TRUE(Kept().empty());
}

TEST_F(Outbox, WhatCannotBeKeptIsPrintedAllTheSameOrLiesInTheFolder) {
  std::ofstream(folder / "lp0").flush();
  machine.settings.Write("TPV", "Printers", "Rollo", "escpos:" + folder / "lp0");
  machine.printers.SetCurrent("Rollo");
  ::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const rlimit full{512, before.rlim_max};  // no file grows beyond: a disk that is full
  ::setrlimit(RLIMIT_FSIZE, &full);
  PrintLines({"x"});
  const std::string told = Told();
  ::setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(told, "");
  EXPECT_NE(folder.Text("lp0").find("x\n"), std::string::npos);
  EXPECT_TRUE(std::filesystem::is_empty(folder / "data/tpv/sin-imprimir"));

  const OutboxFolder outbox(folder / "data/tpv/sin-imprimir");
  for (int i = 0; i < 200; ++i) outbox.Keep({{}, "Ticket", "", machine.clock.Now(), {}, false}, "bytes\n");
  machine.printers.SetCurrent("Barra");
  PrintLines({"x"});
  EXPECT_NE(Told().find("Está guardado en " + folder / "data/tpv/tickets/"), std::string::npos);
  EXPECT_EQ(Kept().size(), 200U);
  std::ofstream(Kept()[0], std::ios::trunc) << "roto";
  EXPECT_EQ(Listed(machine)[0].title, "Documento ilegible");
  EXPECT_NE(ErrorOf([&] { machine.printers.Outbox()->Print(Listed(machine)[0].id, ""); }), "");
  EXPECT_EQ(Kept().size(), 200U);
}

}  // namespace
}  // namespace tpv
