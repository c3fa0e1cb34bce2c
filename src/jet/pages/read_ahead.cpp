#include "jet/pages/read_ahead.h"

#include <algorithm>

namespace jet {

std::uint32_t ReadAhead::runFrom(std::uint32_t page) {
  const auto goesOn = [page](const Stream& stream) {
    return stream.run != 0 && page >= stream.next && page - stream.next <= kMaxGap;
  };
  auto stream = std::ranges::find_if(streams_, goesOn);
  if (stream == streams_.end()) {
    stream = std::ranges::min_element(streams_, {}, &Stream::asked);
    stream->run = 1;
  } else {
    stream->run = std::min(stream->run * kGrowth, kMaxRun);
  }
  stream->next = page + stream->run;
  stream->asked = ++asked_;
  return stream->run;
}

}  // namespace jet
