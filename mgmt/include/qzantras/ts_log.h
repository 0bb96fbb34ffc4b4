#ifndef QZANTRAS_TS_LOG_H
#define QZANTRAS_TS_LOG_H

// Writes one log line "time level thread function: text". Levels: 0 trace,
// 1 soft failure, 2 error. Lines below the threshold (QZSIM_LOG_LEVEL,
// default 1) are dropped; the destination is QZSIM_LOG_FILE or standard
// error.
void ts_log(int level, const char* function, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

#endif
