/* The same work as the driver's, as one would write it by hand for one instrument: no session handles, no channel
 * names, no error records. */
#ifndef TARNEX_BENCH_HANDWRITTEN_H
#define TARNEX_BENCH_HANDWRITTEN_H

#ifdef __cplusplus
extern "C" {
#endif

void HandwrittenOpen(void);

/* All return VISA's status. */
int HandwrittenSetVoltage(int channel, double level);
int HandwrittenGetVoltage(int channel, double* level);
int HandwrittenMeasureVoltage(int channel, double* volts);

#ifdef __cplusplus
}
#endif

#endif
