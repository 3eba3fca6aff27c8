// Files of spreadsheets: whatever wrote them, their texts arrive.
#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "adapters/csv/csv_files.h"
#include "base/text.h"
#include "tests/test_machine.h"

namespace tpv {
namespace {

using Rows = std::vector<std::vector<std::string>>;

class Csv : public testing::Test {
 protected:
  std::string File(const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  std::string Lines(const std::string& bytes) {
    const auto reader = files.Open(File(bytes));
    std::string text;
    for (TableRow row; reader->Next(row);) {
      text += std::to_string(row.line) + ":";
      for (const std::string& cell : row.cells) text += cell + "|";
      text += "\n";
    }
    return text;
  }
  std::string Fault(const std::string& bytes) {
    try {
      return Lines(bytes);
    } catch (const TableError& error) {
      return std::to_string(error.line()) + ":" + error.what();
    }
  }

  TestFolder folder;
  std::string path = folder / "tabla.csv";
  CsvFiles files;
};

TEST_F(Csv, RowsKnowTheirLine) {
  EXPECT_EQ(Lines("a;b\r\n\r\n1;\"dos\r\nlíneas\"\r\n  \r\n3;4"),
            "1:a|b|\n3:1|dos\r\nlíneas|\n6:3|4|\n");
  EXPECT_EQ(Lines("a,b\r1,2\r3,4\r"), "1:a|b|\n2:1|2|\n3:3|4|\n");
  EXPECT_EQ(Lines("\xEF\xBB\xBF"
                  "a\tb\n\t\n"),
            "1:a|b|\n2:||\n");
  EXPECT_EQ(Lines("a;b\n\"0,5\"; 2 \n\" x \";\n"), "1:a|b|\n2:0,5|2|\n3: x ||\n");
  EXPECT_EQ(Lines(""), "");
}

TEST_F(Csv, EncodingsAreThoseOfTheWholeFile) {
  EXPECT_EQ(Lines("a\n\x80 Pe\xF1"
                  "a\n"),
            "1:a|\n2:€ Peña|\n");
  EXPECT_EQ(Lines("a\nPeña €\n"), "1:a|\n2:Peña €|\n");
  EXPECT_EQ(Lines("a\n" + std::string(70'000, 'x') + "\xF1\nñ\n").substr(70'002),
            "xxxxxñ|\n3:Ã±|\n");
  EXPECT_EQ(Lines("\xEF\xBB\xBF"
                  "a\nPe\xF1"
                  "a\n"),
            "1:a|\n2:Pe\xEF\xBF\xBD"
            "a|\n");
}

TEST_F(Csv, WhatCannotBeReadIsRefusedWithItsLine) {
  EXPECT_EQ(Fault("a;b\n1;2\n3;\"x\n4;5\n"), "3:faltan las comillas de cierre");
  EXPECT_EQ(Fault("a;b\n1;2\n3;\"x\"y\n").substr(0, 24), "3:las comillas no están");
  EXPECT_EQ(Fault("a\n\"" + std::string(3'000'000, 'x')).substr(0, 30),
            "2:la fila es demasiado larga; ");
  EXPECT_EQ(Fault("a\n" + std::string(3'000'000, ';')).substr(0, 30),
            "2:la fila es demasiado larga; ");
  EXPECT_NE(Fault(std::string("\xFF\xFE"
                              "a\0",
                              4))
                .find("UTF-16"),
            std::string::npos);
  EXPECT_THROW(files.Open(folder.path()), TableError);
  EXPECT_THROW(files.Open(folder / "nada.csv"), TableError);
}

TEST_F(Csv, ReadingStartsAgain) {
  const auto reader = files.Open(File("a;b\n1;\"2\n3\"\n4;5\n"));
  TableRow row;
  ASSERT_TRUE(reader->Next(row) && reader->Next(row));
  reader->Rewind();
  ASSERT_TRUE(reader->Next(row));
  EXPECT_EQ(row.cells, (std::vector<std::string>{"a", "b"}));
  EXPECT_EQ(row.line, 1);
}

TEST_F(Csv, AFileAppearsWholeOrTheOldOneStays) {
  File("antes");
  {
    const auto writer = files.Create(path);
    writer->Write(std::vector<std::string>{"a"});
  }
  EXPECT_EQ(folder.Text("tabla.csv"), "antes");
  EXPECT_FALSE(std::filesystem::exists(path + ".parcial"));
  EXPECT_THROW(files.Create("/dev/full/x"), TableError);
  EXPECT_THROW(files.Create(folder / "no/hay.csv"), TableError);
}

// Random tables by way of every separator and encoding, quoted where they have to be.
class RandomTable {
 public:
  explicit RandomTable(unsigned seed) : random_(seed) {}

  Rows Make(bool latin) {
    const int columns = Roll(1, 5);
    Rows rows(1);
    for (int i = 0; i < columns; ++i) rows[0].push_back("columna" + std::to_string(i));
    for (int row = Roll(0, 30); row > 0; --row) {
      rows.emplace_back();
      for (int i = 0; i < columns; ++i) rows.back().push_back(Cell(latin));
    }
    return rows;
  }

  std::string Write(const Rows& rows, char separator, const char* line_break, bool latin) {
    std::string bytes;
    for (const auto& row : rows) {
      for (std::size_t i = 0; i < row.size(); ++i) {
        if (i > 0) bytes += separator;
        const std::string cell = latin ? Latin(row[i]) : row[i];
        const bool plain =
            cell.find_first_of(std::string(" \"\r\n\t") + separator) == std::string::npos;
        bytes += plain && !cell.empty() && Roll(0, 3) > 0 ? cell : Quoted(cell);
      }
      bytes += line_break;
    }
    return bytes;
  }

 private:
  int Roll(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }

  std::string Cell(bool latin) {
    const std::vector<std::string> pieces = {"a",
                                             "Z",
                                             "0",
                                             ",",
                                             ";",
                                             "\t",
                                             "\"",
                                             " ",
                                             "\n",
                                             "\r\n",
                                             "ñ",
                                             "€",
                                             "'",
                                             "\"\"",
                                             latin ? "é" : "Ł",
                                             latin ? "Ÿ" : "漢",
                                             latin ? "–" : "😀"};
    std::string cell;
    for (int i = Roll(0, 6); i > 0; --i) cell += pieces[static_cast<std::size_t>(Roll(0, 16))];
    return cell;
  }
  static std::string Quoted(const std::string& cell) {
    return "\"" + ReplaceAll(cell, "\"", "\"\"") + "\"";
  }
  static std::string Latin(std::string text) {
    for (const auto& [utf8, byte] :
         {std::pair{"ñ", "\xF1"}, {"€", "\x80"}, {"é", "\xE9"}, {"Ÿ", "\x9F"}, {"–", "\x96"}}) {
      text = ReplaceAll(text, utf8, byte);
    }
    return text;
  }

  std::mt19937 random_;
};

TEST_F(Csv, RandomTablesArriveAsTheyWere) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    RandomTable random(seed);
    const bool latin = seed % 2 == 0;
    const Rows rows = random.Make(latin);
    const char separator = ",;\t"[seed % 3];
    const char* line_break = seed % 5 == 0 ? "\n" : seed % 5 == 1 ? "\r" : "\r\n";
    const auto check = [&] {
      const auto reader = files.Open(path);
      TableRow row;
      for (const auto& expected : rows) {
        ASSERT_TRUE(reader->Next(row)) << seed;
        ASSERT_EQ(row.cells, expected) << "seed " << seed << " line " << row.line;
      }
      ASSERT_FALSE(reader->Next(row)) << seed;
    };
    File((!latin && seed % 7 == 0 ? "\xEF\xBB\xBF" : "") +
         random.Write(rows, separator, line_break, latin));
    check();
    const auto writer = files.Create(path);
    for (const auto& row : rows) writer->Write(row);
    writer->Finish();
    check();
  }
}

}  // namespace
}  // namespace tpv
