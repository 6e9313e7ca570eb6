#include "preview/input.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "document/linestore.h"

namespace tolvane {

namespace {

/// How far a stream has given its input.
struct Feed {
  const Input* input;
  std::size_t position;
};

ssize_t give(void* cookie, char* buffer, std::size_t size) {
  Feed& feed = *static_cast<Feed*>(cookie);
  const std::string& bytes = feed.input->bytes;
  const std::size_t given = std::min(size, bytes.size() - feed.position);
  if (given == 0 && feed.input->readerror != 0) {
    errno = feed.input->readerror;
    return -1;
  }
  std::copy_n(bytes.data() + feed.position, given, buffer);
  feed.position += given;
  return static_cast<ssize_t>(given);
}

int finish(void* cookie) {
  delete static_cast<Feed*>(cookie);
  return 0;
}

int readall(int file, std::string& bytes) {
  std::array<char, 1 << 16> buffer;
  while (bytes.size() <= largestinput) {
    const ssize_t size = read(file, buffer.data(), buffer.size());
    if (size == 0) return 0;
    if (size > 0) {
      bytes.append(buffer.data(), static_cast<std::size_t>(size));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return EFBIG;
}

}  // namespace

Input readinput(const char* path) {
  Input input;
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) {
    input.openerror = errno;
    return input;
  }
  input.readerror = readall(file, input.bytes);
  (void)close(file);
  return input;
}

std::FILE* serve(const Input& input) {
  errno = input.openerror;
  if (input.openerror != 0) return nullptr;
  auto* const feed = new Feed{&input, 0};
  std::FILE* const stream = fopencookie(feed, "r", {give, nullptr, nullptr, finish});
  if (stream == nullptr) delete feed;
  return stream;
}

Reading readingof(std::string_view bytes) {
  Reading reading;
  for (std::size_t number = 1; !bytes.empty(); ++number) {
    const std::size_t length = std::min(bytes.find('\n'), bytes.size());
    const std::string_view line = bytes.substr(0, length);
    bytes.remove_prefix(std::min(length + 1, bytes.size()));
    reading.split += length > Text::maximum ? 1U : 0U;
    reading.cut += line.find('\0') == std::string_view::npos ? 0U : 1U;
    // A line of exactly as many characters as fit leaves no rest: only its newline is read once more.
    for (std::size_t begin = 0; begin == 0 || begin < length; begin += Text::maximum) {
      const std::string_view piece = line.substr(begin, Text::maximum);
      const std::string_view text = piece.substr(0, piece.find('\0'));
      if (blankline(text)) {
        ++reading.blank;
      } else {
        reading.lines.push_back({text, number});
      }
    }
  }
  return reading;
}

}  // namespace tolvane
