/* What starting a process costs, linked against the C library as every program is. */
int main(void) { return 0; }
