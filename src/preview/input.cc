#include "preview/input.h"

#include <fcntl.h>

#include <cerrno>

#include "document/bytes.h"
#include "document/descriptor.h"

namespace tolvane {

Input readinput(const char* path) {
  Input input;
  const Descriptor file{open(path, O_RDONLY | O_CLOEXEC)};
  input.error = file.isopen() ? readall(file.number(), input.bytes, largestinput) : errno;
  if (input.bytes.size() > largestinput) input.error = EFBIG;
  return input;
}

}  // namespace tolvane
