// The refresh thread's sleep between wake-ups, which stopping the provider
// must be able to cut short: the server waits for terminate(), and a 180 s
// sleep would hold its shutdown for minutes.
#ifndef VEXA_PROVIDER_REFRESHSLEEP_H
#define VEXA_PROVIDER_REFRESHSLEEP_H

// Returns after `seconds`, or at once when KeepRunning is clear or drops
// while sleeping (VexaProvider::wakeRefreshThread()).
void sleepUntilNextRefresh(unsigned seconds);

#endif
