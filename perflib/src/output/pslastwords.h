#pragma once

// What is said where the process ends at once: in a signal handler, on whatever stack, with
// buffers in whatever state.

// A file that gets the last words, beside standard error; until it is closed.
void psAddLastWordsFile(int file);
void psRemoveLastWordsFile(int file);

// Writes the parts as one text to each of the files. Calls nothing but write().
void psSayLastWords(const char* const* parts, int count);
