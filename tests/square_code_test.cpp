// The square code on tickets and invoices: a reader must get its text back from paper.
#include <gtest/gtest.h>

#include "adapters/files/escpos.h"
#include "host/printer_trial.h"
#include "tests/paper_fixture.h"
#include "tests/read_code.h"

namespace tpv {
namespace {

const std::string kUrl =
    "https://prewww2.aeat.es/wlpl/TIKE-CONT/ValidarQR?nif=89890001K&numserie=12345678%2FG33&"
    "fecha=01-01-2024&importe=241.40";

class SquareCodes : public Paper {
 protected:
  void SetUp() override {
    if (!kWithPdf) GTEST_SKIP() << "built without cairo";
    if (!RunProgram({"zbarimg", "--version"}).found) GTEST_SKIP() << "no zbarimg";
  }
  void PrintWithCode() {
    const auto document = machine.printers.Begin("Ticket 1");
    document->SetFont("Courier New", 9, false);
    document->PrintLine("QR tributario:");
    document->PrintCode(kUrl);
    document->PrintLine("VERI*FACTU");
    document->End();
    EXPECT_EQ(Told(), "");
  }
};

TEST_F(SquareCodes, AreReadBackFromTicketsSheetsAndReports) {
  PrintWithCode();
  EXPECT_EQ(ReadBack(folder, folder.Files(".pdf").front()), kUrl + "\n");
  const std::string text = *ReadFile(folder.Files(".txt").front());
  EXPECT_EQ(text.find("QR tributario:\n" + kUrl + "\nVERI*FACTU\n"), 0U) << text;

  Report report{"FACTURA A/1", {"Peña"}, {}, {}, {}};
  report.code = {"QR tributario:", kUrl, "Factura verificable en la sede electrónica de la AEAT"};
  const std::string pdf = machine.reports.Show(report, "factura");
  EXPECT_EQ(ReadBack(folder, pdf), kUrl + "\n");
  const std::string words = RunProgram({"pdftotext", "-layout", pdf, "-"}).output;
  EXPECT_LT(words.find("QR tributario:"), words.find(report.code->below));
  EXPECT_LT(words.find(report.code->below), words.find("FACTURA A/1")) << words;
}

// Between 3 and 4 cm whatever the text's length, at the printer's own resolution.
TEST_F(SquareCodes, HaveTheSizeThatTheAgencyWantsOnReceiptPrinters) {
  for (const std::size_t length : {60U, 131U, 200U, 330U}) {
    for (const double dots_an_inch : {180.0, 203.0, 300.0}) {
      const SquareCode code = machine.codes->Encode(std::string(length, 'x'));
      const CodePrinting own{false, dots_an_inch / 25.4};
      const std::string bytes = CodeBytes(code, own);
      const std::size_t size = bytes.find("1C", bytes.find("\x1D(k\x03"));
      const double millimetres = code.side * bytes[size + 2] / own.dots_per_mm;
      EXPECT_GE(millimetres, 30) << length << " at " << dots_an_inch;
      EXPECT_LE(millimetres, 40) << length << " at " << dots_an_inch;
    }
  }
}

TEST_F(SquareCodes, GoToReceiptPrintersAsTheirOwnCommandOrAsAnImage) {
  std::ofstream(folder / "lp0").flush();
  machine.settings.Write("TPV", "Printers", "Barra", "escpos:" + folder / "lp0");
  PrintWithCode();
  const std::string own = folder.Text("lp0");
  const std::string stored = std::string("\x1D(k") + static_cast<char>(kUrl.size() + 3) + '\0' + "1P0" + kUrl;
  EXPECT_NE(own.find(std::string("\x1D(k\x03\0" "1E1", 8) + stored), std::string::npos);

  // A technician's trial has one when it is asked for, or where codes are set up.
  const auto on_trial = [&](bool asked) {
    std::ofstream(folder / "lp0", std::ios::trunc).flush();
    PrintTrial(machine.printers, machine.settings, machine.clock, "Barra", asked);
    EXPECT_EQ(Told(), "");
    return folder.Text("lp0").find("ValidarQR?nif=00000000T") != std::string::npos;
  };
  EXPECT_FALSE(on_trial(false));
  EXPECT_TRUE(on_trial(true));
  machine.settings.Write("TPV", "SquareCode", "Barra", "own");
  EXPECT_TRUE(on_trial(false));

  machine.settings.Write("TPV", "SquareCode", "Barra", "image");
  std::ofstream(folder / "lp0", std::ios::trunc).flush();
  PrintWithCode();
  const std::string bytes = folder.Text("lp0");
  const std::size_t image = bytes.find(std::string("\x1Dv0\0", 4));
  ASSERT_NE(image, std::string::npos);
  EXPECT_EQ(bytes.find(kUrl), std::string::npos);
  const auto number = [&](std::size_t at) {
    return static_cast<unsigned char>(bytes[image + at]) + 256 * static_cast<unsigned char>(bytes[image + at + 1]);
  };
  // The image's dots as a picture with white around it, for the reader.
  const int row_bytes = number(4);
  const int rows = number(6);
  constexpr int kWhite = 20;
  std::ofstream picture(folder / "image.pbm");
  picture << "P1\n" << row_bytes * 8 + 2 * kWhite << " " << rows + 2 * kWhite << "\n";
  for (int y = -kWhite; y < rows + kWhite; ++y) {
    for (int x = -kWhite; x < row_bytes * 8 + kWhite; ++x) {
      const bool inside = y >= 0 && y < rows && x >= 0 && x < row_bytes * 8;
      const auto at = image + 8 + static_cast<std::size_t>(y * row_bytes + x / 8);
      picture << (inside && (bytes[at] << x % 8 & 0x80) != 0 ? "1 " : "0 ");
    }
  }
  picture.close();
  EXPECT_EQ(RunProgram({"zbarimg", "--nodbus", "-q", "--raw", folder / "image.pbm"}).output, kUrl + "\n");

  machine.settings.Write("TPV", "SquareCode", "Barra", "dibujo");
  const auto document = machine.printers.Begin("Ticket 2");
  document->PrintCode(kUrl);
  document->End();
  EXPECT_NE(Told().find("No se entiende cómo se imprimen los códigos QR: «dibujo»"), std::string::npos);
}

}  // namespace
}  // namespace tpv
