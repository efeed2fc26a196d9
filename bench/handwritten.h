/* The work of the driver, written by hand for one instrument, without session handles, channel names and error
 * records. */
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
