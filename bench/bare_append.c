/* usage: bare_append STATEMENTS OUT
 * What the file protocol of the statement file costs by itself: every statement of STATEMENTS is
 * appended to OUT by an open, a write and a close of its own. Nothing else is done with it. */
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

/* After the statement's line end. A text may hold line breaks: a statement ends where the next
 * begins. */
static const char *statement_end(const char *at, const char *end) {
  while ((at = memchr(at, '\n', (size_t)(end - at))) != NULL) {
    at++;
    if (end - at < 7 || memcmp(at, "Insert ", 7) == 0 || memcmp(at, "Delete ", 7) == 0) return at;
  }
  return end;
}

int main(int argc, char **argv) {
  if (argc != 3) {
    fprintf(stderr, "usage: bare_append STATEMENTS OUT\n");
    return 2;
  }
  int in = open(argv[1], O_RDONLY);
  struct stat size;
  if (in < 0 || fstat(in, &size) != 0) {
    perror(argv[1]);
    return 1;
  }
  const char *line = mmap(NULL, (size_t)size.st_size, PROT_READ, MAP_PRIVATE, in, 0);
  if (line == MAP_FAILED) {
    perror(argv[1]);
    return 1;
  }
  for (const char *end = line + size.st_size; line < end;) {
    size_t length = (size_t)(statement_end(line, end) - line);
    int out = open(argv[2], O_WRONLY | O_APPEND | O_CREAT, 0644);
    if (out < 0 || write(out, line, length) != (ssize_t)length || close(out) != 0) {
      perror(argv[2]);
      return 1;
    }
    line += length;
  }
  return 0;
}
