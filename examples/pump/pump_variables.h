/* Variables of the pump's application that the object dictionary shows. The generated sources
 * include this file after the headers of the protocol stack, which define the types used here. */
#ifndef PUMP_VARIABLES_H
#define PUMP_VARIABLES_H 1

typedef struct {
    UNSIGNED8 mode;
    REAL32 gain;
    REAL32 integralTime;   /* seconds */
    REAL32 derivativeTime; /* seconds */
    INTEGER16 lowestOutput;
    INTEGER16 highestOutput;
    UNSIGNED16 samplingTime; /* milliseconds */
} PUMP_CONTROLLER_T;

typedef struct {
    UNSIGNED32 powered;
    UNSIGNED32 running;
    UNSIGNED32 starts;
} PUMP_HOURS_T;

extern UNSIGNED32 deviceSerialNumber;

extern UNSIGNED8 pumpState;
extern UNSIGNED16 pumpControlWord;
extern UNSIGNED16 pumpStatusWord;
extern UNSIGNED16 pumpSpeedSetpoint;
extern UNSIGNED16 pumpActualSpeed;
extern REAL32 pumpPressureSetpoint;
extern REAL32 pumpPressure[2];
extern INTEGER32 pumpFlowRate;
extern UNSIGNED64 pumpDeliveredVolume;
extern PUMP_CONTROLLER_T pumpController;

extern INTEGER16 motorTemperature[4];
extern INTEGER8 controllerTemperature;
extern UNSIGNED16 motorCurrent[3];
extern UNSIGNED32 supplyVoltage;
extern UNSIGNED24 relaySwitchingCycles;

extern PUMP_HOURS_T operatingHours;
extern UNSIGNED32 serviceAcknowledgeCode;

extern UNSIGNED32 activeAlarms;
extern UNSIGNED32 alarmHistory[8];
extern UNSIGNED8 acknowledgeAlarms;
extern char lastAlarmText[48];

extern char plantIdentifier[40]; /* UTF-8 */

extern UNSIGNED8 valveOutputs;
extern UNSIGNED8 digitalInputs;

#endif /* PUMP_VARIABLES_H */
