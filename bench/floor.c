/* The floor under every run: reads a file line by line into nodes of 528 bytes, writes it anew in one piece, syncs,
 * keeps a backup and renames, as `update` does, with no edits; or sets one entry that is there and writes straight over
 * the file, as `setparameter` does.
 *
 *     floor update FILE
 *     floor setparameter FILE SECTION KEY VALUE */
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

struct line {
  struct line* next;
  struct line* previous;
  char text[512];
};

static struct line* start;
static struct line* last;

static int blank(const char* text) { return text[strspn(text, " \t")] == '\0'; }

static void load(const char* path) {
  FILE* file = fopen(path, "r");
  if (file == NULL) exit(2);
  struct line* line = malloc(sizeof *line);
  while (line != NULL && fgets(line->text, sizeof line->text, file) != NULL) {
    line->text[strcspn(line->text, "\n")] = '\0';
    if (blank(line->text)) continue;
    line->next = NULL;
    line->previous = last;
    *(last == NULL ? &start : &last->next) = line;
    last = line;
    line = malloc(sizeof *line);
  }
  free(line);
  fclose(file);
}

static char* contents(size_t* length) {
  size_t size = 1;
  for (struct line* line = start; line != NULL; line = line->next) size += strlen(line->text) + 2;
  char* text = malloc(size);
  if (text == NULL) exit(2);
  char* end = text;
  for (struct line* line = start; line != NULL; line = line->next) {
    const size_t count = strlen(line->text);
    if (line->text[0] == '[' && line != start) *end++ = '\n';
    memcpy(end, line->text, count);
    end += count;
    *end++ = '\n';
  }
  *length = (size_t)(end - text);
  return text;
}

static void writeto(const char* path, int flags, const char* text, size_t length) {
  const int file = open(path, O_WRONLY | O_CREAT | flags, 0644);
  if (file < 0 || write(file, text, length) != (ssize_t)length || fsync(file) != 0 || close(file) != 0) exit(2);
}

static void replace(const char* path, const char* text, size_t length) {
  char temporary[512];
  char backup[512];
  snprintf(temporary, sizeof temporary, "%s_tmp", path);
  snprintf(backup, sizeof backup, "%s_311", path);
  writeto(temporary, O_EXCL, text, length);
  remove(backup);
  if (rename(path, backup) != 0 || rename(temporary, path) != 0) exit(2);
  const int folder = open(".", O_RDONLY | O_DIRECTORY);
  if (folder < 0 || fsync(folder) != 0) exit(2);
  close(folder);
}

static void set(const char* section, const char* key, const char* value) {
  const size_t length = strlen(key);
  struct line* line = start;
  while (line != NULL && strcmp(line->text, section) != 0) line = line->next;
  do {
    if (line == NULL || (line = line->next) == NULL || line->text[0] == '[') exit(2);
  } while (strncmp(line->text, key, length) != 0 || line->text[length] != '=');
  if (snprintf(line->text, sizeof line->text, "%s=%s", key, value) >= (int)sizeof line->text) exit(2);
}

int main(int count, char** words) {
  if (count < 3) return 2;
  const int setting = strcmp(words[1], "setparameter") == 0;
  if (count != (setting ? 6 : 3)) return 2;
  load(words[2]);
  if (setting) set(words[3], words[4], words[5]);
  size_t length = 0;
  const char* text = contents(&length);
  if (setting) {
    writeto(words[2], O_TRUNC, text, length);
  } else {
    replace(words[2], text, length);
  }
  return 0;
}
