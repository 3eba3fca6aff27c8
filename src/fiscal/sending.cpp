#include "fiscal/sending.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include "fiscal/agency.h"
#include "fiscal/records.h"
#include "fiscal/sending_turn.h"
#include "platform/database.h"

namespace tpv::fiscal {

namespace {

using End = SendingRound::End;
using Records = std::vector<Record>;
using Replies = std::vector<std::pair<std::int32_t, Reply>>;  // by position

constexpr std::size_t kMost = 1000;         // records a message
constexpr int kLongestPauseSeconds = 9999;  // that an answer can ask for

State StateOf(Verdict verdict) {
  if (verdict == Verdict::Accepted) return State::Accepted;
  return verdict == Verdict::AcceptedWithErrors ? State::AcceptedWithErrors : State::Rejected;
}

bool IsAbout(const AnswerLine& line, const Record& record) {
  return line.number == record.document.number && line.cancellation == (record.kind == Kind::Cancellation);
}

class Attempt {
 public:
  Attempt(Connection& connection, Agency& agency, const std::string& holder)
      : connection_(connection), agency_(agency), holder_(holder) {}

  SendingRound Make(When when) {
    if (const auto obstacle = Obstacle(when)) return *obstacle;
    try {
      agency_.RequireReady();  // else the turn is another till's, which may be able to
      return Send();
    } catch (const MessageRefused& refusal) {
      return Fail(End::Refused, refusal.what());
    } catch (const NoAnswer& silence) {
      return Fail(End::NoAnswer, silence.what());
    } catch (const CannotSend& trouble) {
      SendingRound round = Ended(End::CannotSend);
      round.trouble = trouble.what();
      return round;
    }
  }

 private:
  // Asked without a lock: most of the time nothing is to be done.
  std::optional<SendingRound> Obstacle(When when) {
    const Waiting waiting = CountWaiting(connection_);
    if (waiting.count == 0) return Ended(End::NothingWaits);
    const auto turn = ReadTurn(connection_);
    if (!turn) return std::nullopt;
    const DateTime now = StoreTime(connection_);
    if (HasOther(*turn, holder_, now)) return Ended(End::AnotherTill);
    const bool failing = turn->failures > 0;
    const bool many = !failing && waiting.count >= static_cast<std::int64_t>(kMost);
    // A pause longer than any is a clock's that was put back.
    const bool early = turn->next > now && turn->next <= AddSeconds(now, kLongestPauseSeconds);
    if (!early || many || (failing && when == When::AtOnce)) return std::nullopt;
    SendingRound round = Ended(End::TooEarly);
    round.next = turn->next;
    round.trouble = turn->trouble;
    return round;
  }

  static SendingRound Ended(End end) {
    SendingRound round;
    round.end = end;
    return round;
  }

  SendingRound Send() {
    for (std::size_t most = kMost;;) {
      const Records records = HandOver([&] { return NextToSend(connection_, most); });
      if (records.empty()) return Ended(End::AnotherTill);
      try {
        const Answer answer = agency_.Send(records, outage_);
        return Keep(RepliesTo(records, answer), answer.wait_seconds);
      } catch (const MessageRefused& refusal) {
        TakeBack();
        if (records.size() == 1) return Exclude(records.front(), refusal);
        most = records.size() / 2;
      }
    }
  }

  // A record that the agency cannot read would hold up all those behind it for ever. Whether
  // it is this record that is refused, or whatever this shop sends, shows with the next one;
  // when that is refused as well, with the first of another issuer: the shop's number may
  // have been wrong, or be another now.
  SendingRound Exclude(const Record& record, const MessageRefused& refusal) {
    if (const auto round = SendPast(record, [&] { return RecordsFrom(connection_, record.position + 1, 1); }, refusal)) {
      return *round;
    }
    if (const auto round = SendPast(record, [&] { return FirstOfAnother(connection_, record); }, refusal)) return *round;
    throw refusal;
  }

  // Those from `record` to the one chosen count as refused when that one is taken; nullopt
  // when there is none or it is not taken.
  template <typename Choose>
  std::optional<SendingRound> SendPast(const Record& record, Choose choose, const MessageRefused& refusal) {
    const Records taken = HandOver(choose);
    if (taken.empty()) return std::nullopt;
    try {
      const Answer answer = agency_.Send(taken, outage_);
      Replies replies;
      for (std::int32_t position = record.position; position < taken[0].position; ++position) {
        replies.push_back({position, {State::Rejected, 0, refusal.what(), {}, false}});
      }
      const Replies last = RepliesTo(taken, answer);
      replies.insert(replies.end(), last.begin(), last.end());
      return Keep(replies, answer.wait_seconds);
    } catch (const MessageRefused&) {
      TakeBack();
      return std::nullopt;
    }
  }

  // Notes that they go out before they do; none when another till has the turn.
  template <typename Choose>
  Records HandOver(Choose choose) {
    Transaction transaction(connection_);
    if (!TakeTurn(connection_, holder_)) return {};
    const auto turn = ReadTurn(connection_);
    if (!handed_before_) handed_before_ = turn->handed;
    outage_ = turn->failures > 0;
    Records records = choose();
    if (!records.empty()) {
      NoteHanded(connection_, holder_, std::max(*handed_before_, records.back().position));
    }
    transaction.Commit();
    return records;
  }

  void TakeBack() {
    Transaction transaction(connection_);
    NoteHanded(connection_, holder_, *handed_before_);
    transaction.Commit();
  }

  // As far as the answer goes.
  Replies RepliesTo(const Records& records, const Answer& answer) const {
    Replies replies;
    std::vector<AnswerLine> lines = answer.lines;
    for (const Record& record : records) {
      const auto line = std::find_if(lines.begin(), lines.end(),
                                     [&](const AnswerLine& each) { return IsAbout(each, record); });
      if (line == lines.end()) break;
      replies.emplace_back(record.position, ReplyOf(*line, record, answer));
      lines.erase(line);
    }
    if (replies.empty()) throw NoAnswer("La respuesta no nombra los registros enviados");
    return replies;
  }

  // A record that was never handed over before and is there all the same is another one
  // with its number.
  Reply ReplyOf(const AnswerLine& line, const Record& record, const Answer& answer) const {
    const bool own = record.position <= *handed_before_;
    const State state = line.duplicate && !own ? State::Rejected : StateOf(line.verdict);
    return {state, line.code, line.text, answer.receipt, line.duplicate};
  }

  // Some at a time: sales go on between them. What is not kept goes out again.
  SendingRound Keep(std::span<const std::pair<std::int32_t, Reply>> replies, int wait_seconds) {
    constexpr std::size_t kAtOnce = 50;
    SendingRound round = Ended(End::Answered);
    while (!replies.empty()) {
      const auto some = replies.first(std::min(kAtOnce, replies.size()));
      replies = replies.subspan(some.size());
      Transaction transaction(connection_);
      const Records waiting = NextToSend(connection_, 1);
      for (const auto& [position, reply] : some) {
        // Another till that took the turn over may have kept the answer meanwhile.
        if (waiting.empty() || position < waiting.front().position) continue;
        StoreReply(connection_, position, reply);
        Count(reply, round);
      }
      if (replies.empty()) NoteAnswered(connection_, holder_, wait_seconds);
      transaction.Commit();
    }
    return round;
  }

  static void Count(const Reply& reply, SendingRound& round) {
    round.accepted += reply.state == State::Accepted;
    round.with_errors += reply.state == State::AcceptedWithErrors;
    round.rejected += reply.state == State::Rejected;
    round.duplicates += reply.duplicate;
  }

  SendingRound Fail(End end, const std::string& trouble) {
    Transaction transaction(connection_);
    NoteFailed(connection_, holder_, trouble);
    transaction.Commit();
    SendingRound round = Ended(end);
    round.trouble = trouble;
    return round;
  }

  Connection& connection_;
  Agency& agency_;
  const std::string& holder_;
  std::optional<std::int32_t> handed_before_;  // what earlier attempts handed over
  bool outage_ = false;
};

std::string AnswersText(const SendingRound& round) {
  const int all = round.accepted + round.with_errors + round.rejected;
  std::string text = "Registros enviados: " + std::to_string(all) + ". Aceptados: " + std::to_string(round.accepted);
  const auto add = [&](const char* what, int count) {
    if (count > 0) text += std::string(", ") + what + ": " + std::to_string(count);
  };
  add("aceptados con errores", round.with_errors);
  add("rechazados", round.rejected);
  add("que la Agencia ya tenía", round.duplicates);
  return text;
}

}  // namespace

std::string Told(const SendingRound& round) {
  switch (round.end) {
    case End::Answered:
      return AnswersText(round);
    case End::NothingWaits:
      return "No hay registros que enviar";
    case End::TooEarly:
      return "Hay que esperar hasta las " + ToDayFirstSeconds(round.next).substr(11) +
             (round.trouble.empty() ? ": lo pide la Agencia" : ": " + round.trouble);
    case End::AnotherTill:
      return "Está enviando otra caja de la tienda";
    case End::Refused:
      return "La Agencia ha rechazado el mensaje entero: " + round.trouble;
    case End::NoAnswer:
      return round.trouble + ". Los registros se volverán a enviar";
    case End::CannotSend:
      return "No se puede enviar. " + round.trouble;
  }
  return {};
}

SendingRound SendWaiting(Connection& connection, Agency& agency, const std::string& holder, When when) {
  return Attempt(connection, agency, holder).Make(when);
}

std::string NewHolder() {
  std::random_device random;
  char name[40];
  std::snprintf(name, sizeof name, "%08x%08x%08x", random(), random(), random());
  return name;
}

void LeaveTurn(Connection* connection, const std::string& holder) noexcept {
  if (connection == nullptr) return;
  try {
    const auto turn = ReadTurn(*connection);
    if (!turn || turn->holder != holder) return;
    Transaction transaction(*connection);
    GiveUpTurn(*connection, holder);
    transaction.Commit();
  } catch (const std::exception&) {
    // It ends by itself.
  }
}

SendingRound SendOnce(Connection& connection, Agency& agency) {
  const std::string holder = NewHolder();
  SendingRound round = SendWaiting(connection, agency, holder, When::AtOnce);
  LeaveTurn(&connection, holder);
  return round;
}

}  // namespace tpv::fiscal
