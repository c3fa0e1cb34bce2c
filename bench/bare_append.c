/* usage: bare_append STATEMENTS OUT
 * What the file protocol of the statement file costs by itself: every line of STATEMENTS is appended
 * to OUT by an open, a write and a close of its own. Nothing else is done with the lines. */
#include <fcntl.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

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
    const char *stop = memchr(line, '\n', (size_t)(end - line));
    size_t length = (size_t)((stop != NULL ? stop + 1 : end) - line);
    int out = open(argv[2], O_WRONLY | O_APPEND | O_CREAT, 0644);
    if (out < 0 || write(out, line, length) != (ssize_t)length || close(out) != 0) {
      perror(argv[2]);
      return 1;
    }
    line += length;
  }
  return 0;
}
