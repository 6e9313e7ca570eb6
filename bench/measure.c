/* Runs a command and prints what it took: seconds, peak memory in KB, status. A program of its own, so that neither the
 * time nor the memory of the script that compares the tools comes in.
 *
 *     measure SECONDS COMMAND...      kills the command after so many seconds */
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static double now(void) {
  struct timespec time;
  clock_gettime(CLOCK_MONOTONIC, &time);
  return (double)time.tv_sec + 1e-9 * (double)time.tv_nsec;
}

static void stop(int signal) {
  (void)signal;
  kill(0, SIGKILL);
}

int main(int count, char** words) {
  if (count < 3) return 2;
  setpgid(0, 0);
  signal(SIGALRM, stop);
  alarm((unsigned)atoi(words[1]));
  const int null = open("/dev/null", O_WRONLY);
  const double begin = now();
  const pid_t child = vfork();
  if (child == 0) {
    dup2(null, STDOUT_FILENO);
    dup2(null, STDERR_FILENO);
    execvp(words[2], words + 2);
    _exit(127);
  }
  int status = 0;
  struct rusage usage;
  if (child < 0 || wait4(child, &status, 0, &usage) != child) return 2;
  printf("%.6f %ld %d\n", now() - begin, usage.ru_maxrss, WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status));
  return 0;
}
