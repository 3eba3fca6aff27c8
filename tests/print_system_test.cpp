// Tickets, reports and drawer codes through a real printing system, where it is installed.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <tuple>

#include "base/text.h"
#include "tests/machine_fixture.h"
#include "tests/print_system.h"

namespace tpv {
namespace {

struct Sheet {
  double width, height;  // millimetres
};

class RealPaper : public MachineFixture {
 protected:
  static std::unique_ptr<PrintSystem> cups;
  static void SetUpTestSuite() {
    if (!PrintSystem::Installed()) return;
    cups = std::make_unique<PrintSystem>();
    cups->Start();
    cups->AddQueue("Rollo", {"X80MMY200MM 227 567"}, 9000);
    cups->AddQueue("Trozos", {"X80MMY200MM 227 567", "X80MMY600MM 227 1701", "RP80x100 227 283"}, 0);
    cups->AddQueue("Hojas", {"A4 595 842", "A5 420 595"}, 0);
    cups->AddQueue("Rara", {"w200h800 595 842"}, 0);  // sheets that look like a roll
    cups->Run("lpadmin -p Bruta -E -v paper:/ -m raw; lpadmin -d Rollo");
  }
  static void TearDownTestSuite() { cups.reset(); }

  void SetUp() override {
    if (!cups) GTEST_SKIP() << "without a printing system";
    printed_ = cups->Papers(0).size();
  }

  void PrintLines(const std::string& printer, int count) {
    machine.printers.SetCurrent(printer);
    const auto document = machine.printers.Begin("Ticket T9001");
    document->SetFont("Courier New", 9, false);
    for (int i = 1; i <= count; ++i) {
      document->PrintLine("linea" + std::to_string(i) + " 23456789012345678 12,50\r\n");
      document->SetY(document->Y() - 0.3);
    }
    document->End();
  }
  // The papers since the last look.
  std::vector<std::string> Papers(std::size_t expected) {
    auto papers = cups->Papers(printed_ + expected);
    papers.erase(papers.begin(), papers.begin() + static_cast<std::ptrdiff_t>(printed_));
    printed_ += papers.size();
    return papers;
  }
  std::string PaperOf(const std::string& printer, int lines) {
    PrintLines(printer, lines);
    EXPECT_EQ(Told(), "");
    const auto papers = Papers(1);
    return papers.size() == 1 ? papers[0] : "";
  }
  static std::string TextOf(const std::string& paper) {
    return RunProgram({"pdftotext", "-layout", paper, "-"}).output;
  }
  // Sizes of all pages; a turned one shows by its sides.
  static std::vector<Sheet> SheetsOf(const std::string& paper) {
    std::vector<Sheet> sheets;
    for (const std::string& line :
         Split(RunProgram({"pdfinfo", "-f", "1", "-l", "99", paper}).output, "\n")) {
      double width = 0;
      double height = 0;
      if (std::sscanf(line.c_str(), "Page %*d size: %lf x %lf", &width, &height) == 2) {
        sheets.push_back({width * 25.4 / 72, height * 25.4 / 72});
      }
    }
    return sheets;
  }
  static void ExpectWhole(const std::string& paper, int lines) {
    const std::string text = TextOf(paper);
    std::size_t at = 0;
    for (int i = 1; i <= lines; ++i) {
      at = text.find("linea" + std::to_string(i) + " 23456789012345678 12,50", at);
      ASSERT_NE(at, std::string::npos) << "line " << i << " of " << lines << "\n" << text;
    }
  }
  // Millimetres of the first word from the page's upper edge and left.
  static Sheet FirstWord(const std::string& paper) {
    const std::string boxes = RunProgram({"pdftotext", "-bbox", paper, "-"}).output;
    double left = -1;
    double top = -1;
    std::sscanf(boxes.c_str() + boxes.find("<word"), "<word xMin=\"%lf\" yMin=\"%lf\"", &left, &top);
    return {left * 25.4 / 72, top * 25.4 / 72};
  }

 private:
  std::size_t printed_ = 0;
};

std::unique_ptr<PrintSystem> RealPaper::cups;

TEST_F(RealPaper, ARollIsCutToTheTicketsOwnLength) {
  double one_line = 0;
  for (const int lines : {1, 40, 150}) {
    const std::string paper = PaperOf("Rollo", lines);
    ExpectWhole(paper, lines);
    const auto sheets = SheetsOf(paper);
    ASSERT_EQ(sheets.size(), 1U) << lines;
    EXPECT_NEAR(sheets[0].width, 80, 0.6);
    if (lines == 1) one_line = sheets[0].height;
    EXPECT_GT(sheets[0].height, lines * 3.8);
    EXPECT_LT(FirstWord(paper).height, 6) << lines;
    EXPECT_LT(FirstWord(paper).width, 6) << lines;
  }
  EXPECT_LT(one_line, 50);
  // The default of the system is asked for when nobody chose.
  EXPECT_EQ(machine.printers.Installed().front(), "Rollo");
}

TEST_F(RealPaper, ARollOfFixedSizesGivesTheShortestThatFitsOrSeveral) {
  for (const auto& [lines, length, pieces] :
       std::vector<std::tuple<int, double, std::size_t>>{{1, 100, 1}, {40, 200, 1}, {120, 600, 1}, {150, 600, 2}}) {
    const std::string paper = PaperOf("Trozos", lines);
    ExpectWhole(paper, lines);
    const auto sheets = SheetsOf(paper);
    ASSERT_EQ(sheets.size(), pieces) << lines;
    for (const Sheet& sheet : sheets) {
      EXPECT_NEAR(sheet.width, 80, 0.6);
      EXPECT_NEAR(sheet.height, length, 1);
    }
    EXPECT_LT(FirstWord(paper).height, 6) << lines;
  }
}

TEST_F(RealPaper, SheetsGetPagesWithHeadAndNumber) {
  for (const auto& [lines, pages] : std::map<int, std::size_t>{{1, 1}, {150, 3}, {400, 7}}) {
    const std::string paper = PaperOf("Hojas", lines);
    ExpectWhole(paper, lines);
    const auto sheets = SheetsOf(paper);
    ASSERT_EQ(sheets.size(), pages) << lines;
    for (const Sheet& sheet : sheets) EXPECT_NEAR(sheet.height, 297, 1);
    const auto texts = Split(TextOf(paper), "\f");
    for (std::size_t page = 1; page <= pages; ++page) {
      const std::string number = "Página " + std::to_string(page) + " de " + std::to_string(pages);
      EXPECT_NE(texts[page - 1].find("Ticket T9001"), std::string::npos) << page;
      EXPECT_NE(texts[page - 1].find(number), std::string::npos) << number;
    }
    EXPECT_LT(FirstWord(paper).height, 30);
  }
  // What the driver says of its paper can be wrong.
  machine.settings.Write("TPV", "Printers", "Barra", "roll:Hojas");
  machine.settings.Write("TPV", "Printers", "Oficina", "sheets:Rara");
  EXPECT_EQ(TextOf(PaperOf("Barra", 3)).find("Página"), std::string::npos);
  EXPECT_NE(TextOf(PaperOf("Oficina", 3)).find("Página 1 de 1"), std::string::npos);
}

TEST_F(RealPaper, AnInvoiceOnARollSaysWhichPrinterItNeedsAndWhereItLies) {
  const Report invoice{"FACTURA A/12", {"Ultramarinos Peña"}, {"Ana"}, {}, {}};
  machine.reports.Print(invoice, "Hojas");
  EXPECT_EQ(Told(), "");
  const auto papers = Papers(1);
  ASSERT_EQ(papers.size(), 1U);
  EXPECT_NEAR(SheetsOf(papers[0])[0].width, 210, 1);
  EXPECT_NE(TextOf(papers[0]).find("FACTURA A/12"), std::string::npos);
  for (const char* printer : {"Rollo", "Trozos", "Bruta"}) {
    machine.reports.Print(invoice, printer);
    const std::string told = Told();
    EXPECT_TRUE(told.starts_with("«FACTURA A/12» no se ha impreso en «" + std::string(printer) +
                                 "». Hace falta una impresora de hojas A4")) << told;
    EXPECT_NE(told.find(folder / "data/tpv/informes/"), std::string::npos) << told;
  }
  EXPECT_EQ(folder.Files(".pdf").size(), 3U);
}

TEST_F(RealPaper, ARawQueueGetsBytesAndNeverAPdf) {
  const std::string paper = PaperOf("Bruta", 2);
  EXPECT_TRUE(ReadFile(paper)->starts_with("\x1B@\x1Bt\x13linea1 ")) << *ReadFile(paper);
  machine.printers.SendRaw(std::string("\x1Bp\0\x19\xFA", 5));
  EXPECT_EQ(Told(), "");  // another printer's bytes wait for nobody
  machine.printers.SetCurrent("Rollo");
  machine.printers.SendRaw("kick");
  EXPECT_EQ(Told(), "");
  const auto papers = Papers(2);
  ASSERT_EQ(papers.size(), 2U);
  EXPECT_EQ(*ReadFile(papers[0]) + *ReadFile(papers[1]), std::string("\x1Bp\0\x19\xFA", 5) + "kick");
}

TEST_F(RealPaper, AStoppedQueueIsToldInSpanishKeepsTicketsAndRefusesTheDrawer) {
  cups->Run("cupsdisable -r 'filter failed' Hojas");
  PrintLines("Hojas", 2);
  machine.printers.SendRaw("kick");
  EXPECT_EQ(Told(), "«Ticket T9001» espera en la cola de «Hojas»: la impresora está parada.\n");
  EXPECT_EQ(Papers(0).size(), 0U);
  cups->Run("cupsenable Hojas");
  const auto papers = Papers(1);
  ASSERT_EQ(papers.size(), 1U);
  ExpectWhole(papers[0], 2);

  cups->Run("cupsreject Hojas");
  PrintLines("Hojas", 2);
  const std::string told = Told();
  EXPECT_NE(told.find("La cola «Hojas» no admite documentos. Está guardado en " + folder.path()),
            std::string::npos) << told;
  cups->Run("cupsaccept Hojas");
  EXPECT_THROW(machine.printers.SetCurrent("Nadie"), PrintError);
}

TEST_F(RealPaper, AnAbsentPrintingSystemIsToldAndPrintsAsSoonAsItIsBack) {
  const auto current = [&] { return machine.printers.Current(); };
  EXPECT_EQ(current(), "Rollo");
  cups->Stop();
  // Nobody takes the last list for an empty one.
  EXPECT_EQ(machine.printers.Installed().front(), "Rollo");
  EXPECT_EQ(Told(), "El sistema de impresión no está en marcha. Pueden faltar impresoras en la lista.\n");
  PrintLines("", 2);
  const std::string told = Told();
  EXPECT_NE(told.find("El sistema de impresión no está en marcha. Está guardado en " + folder.path()),
            std::string::npos) << told;
  EXPECT_EQ(folder.Files(".txt").size(), 1U);
  // It starts while a ticket waits for it, within the ticket's time.
  PrintLines("", 3);
  cups->Start();
  EXPECT_EQ(Told(), "");
  const auto papers = Papers(1);
  ASSERT_EQ(papers.size(), 1U);
  ExpectWhole(papers[0], 3);
  EXPECT_EQ(folder.Files(".txt").size(), 1U);

  // One that hangs: the till goes on at once, and is told in time.
  cups->Signal(SIGSTOP);
  const auto start = std::chrono::steady_clock::now();
  PrintLines("", 2);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
  EXPECT_NE(Told().find("El sistema de impresión no ha respondido a tiempo"), std::string::npos);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(5500));
  cups->Signal(SIGCONT);
  EXPECT_EQ(folder.Files(".txt").size(), 2U);
}

}  // namespace
}  // namespace tpv
