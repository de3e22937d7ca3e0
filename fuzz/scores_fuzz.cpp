// Any answer of the service is listed line by line on the score board, and any query posted to the
// service is accepted or refused with an error.

#include <cmath>

#include "forms/desktop.h"
#include "packed_files.h"
#include "platform/virtual_platform.h"
#include "scoreserver/score.h"
#include "session/sim_session.h"
#include "shell/score_board.h"

namespace velumar {
namespace {

class Board {
 public:
  Board() { outside_.settings.texts["Score/Address"] = "scores.example"; }

  void Shows(std::string_view answer) {
    outside_.web.answers = {std::string(answer)};
    board_.Open();
    std::string joined;
    for (const std::string& line : desktop_.frmScore().List1.Lines()) joined += line + "\r\n";
    Require(answer.empty() ? joined.empty() : joined == std::string(answer) + "\r\n");
    desktop_.Unload(desktop_.frmScore());
  }

 private:
  VirtualPlatform outside_;
  Platform platform_ = outside_.References();
  SimSession session_;
  Desktop desktop_;
  ScoreBoard board_{session_, desktop_, platform_};
};

// A list shows a post as one line without control characters.
void TryPost(std::string_view query) {
  try {
    const Score score = ParseScore(query);
    Require(std::isfinite(score.money) && score.name.size() <= kLongestName);
    for (const char character : ScoreLine(1, score)) Require(character < 0 || character >= ' ');
  } catch (const BadScore&) {
  }
}

}  // namespace
}  // namespace velumar

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  using namespace velumar;
  static Board board;
  if (size == 0) return 0;
  const std::string_view text = AsText(data + 1, size - 1);
  if (data[0] % 2 == 0) {
    board.Shows(text);
  } else {
    TryPost(text);
  }
  return 0;
}
