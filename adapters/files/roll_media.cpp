#include "adapters/files/roll_media.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tpv {

namespace {

// Centimetres: what drivers of rolls take at most, and a line for each cut between pieces.
constexpr double kLongestPiece = 300;
constexpr double kLineHeight = 0.8;

// "Custom.80x123.4mm"
std::string OwnSize(const RollPiece& piece) {
  char name[60];
  std::snprintf(name, sizeof name, "Custom.%.1fx%.1fmm", piece.width * 10, piece.length * 10);
  return name;
}

double OwnLength(double ticket_length) {
  const double pieces = std::ceil(ticket_length / kLongestPiece);
  return pieces > 1 ? ticket_length / pieces + kLineHeight : ticket_length;
}

const RollSize& Fitting(double ticket_length, const std::vector<RollSize>& sizes) {
  const auto fits = [&](const RollSize& size) { return size.length >= ticket_length; };
  const auto found = std::find_if(sizes.begin(), sizes.end(), fits);
  return found == sizes.end() ? sizes.back() : *found;
}

}  // namespace

RollMedia MediaFor(double ticket_length, const QueuePaper& paper) {
  RollMedia media{{paper.roll_width, OwnLength(ticket_length)},
                  {"print-scaling=none", "orientation-requested=3"}};
  std::string size;
  if (paper.any_length) {
    size = OwnSize(media.piece);
  } else if (!paper.sizes.empty()) {
    const RollSize& fitting = Fitting(ticket_length, paper.sizes);
    media.piece.length = fitting.length;
    size = fitting.name;
  }
  if (!size.empty()) media.options.push_back("media=" + size);
  return media;
}

}  // namespace tpv
