/* Variables of the gateway that generated sources refer to. The application defines them. */
#ifndef GATEWAY_VARIABLES_H
#define GATEWAY_VARIABLES_H 1

/* CANopen: the machine */
extern UNSIGNED8 gateway_state;
extern UNSIGNED16 drive_speed[2];

/* J1939: the engine */
extern UNSIGNED16 engine_speed;
extern UNSIGNED8 engine_load;
extern UNSIGNED8 coolant_temperature;

/* raw CAN: the battery */
extern UNSIGNED16 battery_voltage;
extern UNSIGNED16 battery_current;
extern UNSIGNED8 battery_charge;
extern UNSIGNED8 battery_command;
extern UNSIGNED16 cell_lowest;
extern UNSIGNED16 cell_highest;

#endif /* GATEWAY_VARIABLES_H */
