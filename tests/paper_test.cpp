// What the till puts on paper, into files and onto devices.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "adapters/files/document_folder.h"
#include "adapters/files/pdf/fonts.h"
#include "adapters/files/program.h"
#include "component/zrtpve.h"
#include "host/demo/demonstration.h"
#include "suite/store_database.h"
#include "tests/paper_fixture.h"

namespace tpv {
namespace {

TEST_F(Paper, IsNotPutWhereAnotherUsersLinkLeads) {
  const std::string paper = folder / "papel";
  std::filesystem::create_directory(folder / "lejos");
  std::filesystem::create_symlink(folder / "lejos", paper);
  const DocumentFolder documents(paper, machine.clock);
  documents.Save("Ticket 1", {{".txt", "Pan"}});
  EXPECT_FALSE(folder.Files(".txt").empty());  // the user's own link is followed
  if (::geteuid() != 0) GTEST_SKIP() << "only root can lay another user's link";
  ASSERT_EQ(::lchown(paper.c_str(), 65534, 65534), 0);
  EXPECT_EQ(ErrorOf([&] { documents.Save("Ticket 2", {{".txt", "Pan"}}); }), "«" + paper + "» es un enlace de otro usuario");
  EXPECT_EQ(folder.Files(".txt").size(), 1U);
}

// A word of a PDF page and the box around it, in points.
struct Word {
  double left, top, right, bottom;
  std::string text;
};

std::vector<Word> WordsOf(const std::string& pdf, double& page_width) {
  std::vector<Word> words;
  std::istringstream lines(RunProgram({"pdftotext", "-bbox", pdf, "-"}).output);
  for (std::string line; std::getline(lines, line);) {
    Word word{};
    char text[200] = "";
    std::sscanf(line.c_str(), " <page width=\"%lf\"", &page_width);
    if (std::sscanf(line.c_str(),
                    " <word xMin=\"%lf\" yMin=\"%lf\" xMax=\"%lf\" yMax=\"%lf\">%199[^<]",
                    &word.left, &word.top, &word.right, &word.bottom, text) == 5) {
      word.text = text;
      words.push_back(word);
    }
  }
  const auto place = [](const Word& word) { return std::pair(std::lround(word.top), word.left); };
  std::sort(words.begin(), words.end(),
            [&](const Word& a, const Word& b) { return place(a) < place(b); });
  return words;
}

// Nothing beyond the paper's edge, and no line into the one above it.
void ExpectNothingOverlaps(const std::string& pdf) {
  double width = 0;
  const std::vector<Word> words = WordsOf(pdf, width);
  ASSERT_GT(words.size(), 30U);
  EXPECT_NEAR(width, 80 / 25.4 * 72, 0.1);
  for (std::size_t i = 0; i < words.size(); ++i) {
    EXPECT_GE(words[i].left, 4 / 25.4 * 72 - 0.1) << words[i].text;
    EXPECT_LE(words[i].right, 76 / 25.4 * 72 + 0.1) << words[i].text;
    if (i == 0) continue;
    const Word& before = words[i - 1];
    const bool same_line = std::abs(words[i].top - before.top) < 1;
    if (same_line)
      EXPECT_GT(words[i].left, before.right) << words[i].text;
    else
      EXPECT_GE(words[i].top, before.bottom - 0.05) << words[i].text;
  }
}

TEST_F(Paper, ASalesTicketIsTheSameAsTextAndAsPdfAndFitsThePaper) {
  if (!kWithPdf) GTEST_SKIP() << "built without cairo";
  TestStore store;
  Transaction transaction(store.connection());
  FillDemonstration(store.connection(), store.clock().now);
  store.connection().Execute(
      "UPDATE Parametros SET Par_Nombre = 'Ultramarinos y Vinos Hermanos Peña e Hijas'");
  store.connection().Execute(
      "UPDATE Lav SET Lav_Uni = 1234, Lav_Dto1 = 10 WHERE Lav_Id = (SELECT MAX(Lav_Id) FROM Lav)");
  transaction.Commit();
  FindFontsByName("Liberation Sans");  // as a program with windows does
  objects.SetPorts(ports);
  Zrtpve component(ports);
  component.context().MyBd =
      std::make_shared<suite::StoreDatabase>(store.connection(), 1, front_end, machine.clock,
                                             machine.settings);
  component.context().IdAlbaran = std::stoi(store.Value("SELECT MAX(Lav_IdCav) FROM Lav"));

  component.Emite_Ticket();
  component.Emite_Ticket();

  EXPECT_EQ(Told(), "");
  const auto texts = folder.Files(".txt");
  const auto pdfs = folder.Files(".pdf");
  ASSERT_EQ(texts.size(), 2U);
  ASSERT_EQ(pdfs.size(), 2U);
  EXPECT_EQ(ModeOf(texts[0]), 0600);
  EXPECT_EQ(ModeOf(pdfs[0]), 0600);
  EXPECT_EQ(ModeOf(folder / "data/tpv/tickets"), 0700);
  const std::string text = *ReadFile(texts[0]);
  EXPECT_TRUE(text.starts_with("Ultramarinos y Vinos Hermanos Peña e Hijas\n")) << text;
  // Header lines close up, sold lines keep their gap, eight lines feed the paper.
  EXPECT_NE(text.find("\nCIF/NIF "), std::string::npos);
  EXPECT_NE(text.find(" GRACIAS POR SU VISITA *\n\n\n\n\n\n\n\n\n\n"), std::string::npos) << text;

  const std::string on_paper = RunProgram({"pdftotext", "-layout", pdfs[0], "-"}).output;
  const auto words = [](const std::string& all) {
    std::istringstream stream(all);
    return std::vector<std::string>(std::istream_iterator<std::string>(stream), {});
  };
  EXPECT_EQ(words(on_paper), words(text + "\f"));
  ExpectNothingOverlaps(pdfs[0]);
  const std::string fonts = RunProgram({"pdffonts", pdfs[0]}).output;
  EXPECT_NE(fonts.find("LiberationMono"), std::string::npos) << fonts;
}

TEST_F(Paper, NoNameLeadsOutOfTheFolder) {
  if (!kWithPdf) GTEST_SKIP() << "built without cairo";
  for (const char* name : {"../../../fuera", "/etc/passwd", "..", "\xFF\n", "Ñandú/Barra"}) {
    machine.settings.Write("TPV", "Printers", name, "folder");
    machine.printers.SetCurrent(name);
    PrintLines({name});
    machine.printers.SendRaw("\x1Bp");
    machine.Finish();
    EXPECT_EQ(
        machine.reports.Show({"Título", {}, {}, {}, {}}, name).find(folder / "data/tpv/informes/2"),
        0U);
  }
  EXPECT_EQ(folder.Files(".txt").size(), 5U);
  EXPECT_EQ(folder.Files(".raw").size(), 5U);
  for (const std::string& file : folder.Files("")) {
    if (!std::filesystem::is_regular_file(file) || file.find("config") != std::string::npos ||
        file.find("/bin/") != std::string::npos)
      continue;
    EXPECT_TRUE(file.starts_with(folder / "data/tpv/")) << file;
    EXPECT_EQ(std::count(file.begin(), file.end(), '/'),
              std::count(folder.path().begin(), folder.path().end(), '/') + 4)
        << file;
  }
  EXPECT_EQ(FileNamePiece("Ñandú/Barra"), "nandu-barra");
}

TEST_F(Paper, AFolderThatCannotBeWrittenIsToldAndTheTicketKeptInTheUsualOne) {
  std::ofstream(folder / "file") << "x";
  machine.settings.Write("TPV", "Printers", "Barra", "folder:" + folder / "file/below");
  PrintLines({"x"});
  const std::string told = Told();
  ASSERT_EQ(folder.Files(".txt").size(), 1U);
  EXPECT_TRUE(told.starts_with("«Ticket 1» no se ha impreso en «Barra». ")) << told;
  EXPECT_NE(told.find("no es una carpeta"), std::string::npos) << told;
  EXPECT_NE(told.find("Está guardado en " + folder.Files(".txt")[0]), std::string::npos) << told;
  machine.settings.Write("TPV", "Paper", "Tickets", folder / "file/below");
  PrintLines({"x"});
  EXPECT_NE(Told().find("Tampoco se ha podido guardar"), std::string::npos);
  EXPECT_EQ(folder.Files(".txt").size(), 1U);
}

TEST_F(Paper, AReportNumbersItsPagesRepeatsItsCaptionsAndOpens) {
  if (!kWithPdf) GTEST_SKIP() << "built without cairo";
  folder.Program("xdg-open",
                 "echo \"$1\" > $FOLDER/opened.part; mv $FOLDER/opened.part $FOLDER/opened");
  Report report{"Diario de cierres", {"Ultramarinos Peña", "B-1234"}, {"Del 01/11/2026"}, {}, {}};
  ReportTable table{
      "Cierres", {{"Fecha", 2, false}, {"Vendedor", 4, false}, {"Saldo", 1, true}}, {}};
  for (int i = 1; i <= 90; ++i)
    table.rows.push_back({{"fila" + std::to_string(i), "Ana", "1.234,50"}});
  table.rows.push_back({{"", "", "sobra"}, true});
  table.rows.back().cells[1] = std::string(200, 'w') + " fin";  // wider than its column
  report.tables = {table};
  report.charts = {
      {"Efectivo y tarjeta", {"Efectivo", "Tarjeta"}, {"lun", "mar"}, {{120.5, 0}, {-30, 1e6}}},
      {"Vacío", {}, {}, {}}};
  const TestVariable display("DISPLAY", ":7");
  const std::string path = machine.reports.Show(report, "cierres");
  const std::string text = RunProgram({"pdftotext", "-layout", path, "-"}).output;
  for (const char* part : {"Diario de cierres", "B-1234", "Del 01/11/2026", "fila90", "fin",
                           "Tarjeta", "1.000.000", "Página 1 de 3", "Página 3 de 3"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
  }
  EXPECT_NE(text.find("Vendedor", text.find('\f')), std::string::npos);
  EXPECT_EQ(Told(), "");
  EXPECT_EQ(folder.Text("opened"), path + "\n");
  // Nobody to show it, or nothing to show it on: the operator learns where it lies.
  folder.Program("xdg-open", "exit 3");
  std::string lies = machine.reports.Show(report, "cierres");
  EXPECT_EQ(Told(), "«Diario de cierres» no se puede mostrar. Está en " + lies + ".\n");
  const TestVariable no_display("DISPLAY", "");
  lies = machine.reports.Show(report, "cierres");
  EXPECT_EQ(Told(), "«Diario de cierres» no se puede mostrar. Está en " + lies + ".\n");
}

}  // namespace
}  // namespace tpv
