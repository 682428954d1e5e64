-- The controller of an excavator on a J1939 network: levers and sensors come in, demands to pumps, valves and
-- engine go out, two groups are safe. The sqlite3 program makes a project of it, see scripts/demo.
--
-- Groups and signals stand in tables that are easy to read and to change; the end of the file makes the
-- tables of the project of them.

BEGIN;

-- Settings -------------------------------------------------------------------------------------------------

CREATE TABLE GeneralSettings (item text unique, value text);
INSERT INTO GeneralSettings VALUES
    ('line0type', '2'),
    ('receivebuffersize', '20'),
    ('transmitbuffersize', '10'),
    ('co_timer_interval', '1000'),
    ('new_init_structure', '1'),
    ('init_static_variables', '1');

CREATE TABLE J1939Settings (item text unique, value text);
-- The NAME of the device and the address that it claims first
INSERT INTO J1939Settings VALUES
    ('identitynumber', '4711'),
    ('manufacturercode', '2046'),
    ('ecuinstance', '0'),
    ('functioninstance', '0'),
    ('function', '130'),
    ('vehiclesystem', '25'),
    ('vehicleinstance', '0'),
    ('industrygroup', '3'),
    ('addresscapable', '1'),
    ('startaddress', '39');
-- Long messages and requests
INSERT INTO J1939Settings VALUES
    ('bamsupport', '1'),
    ('bamcycletime', '50'),
    ('cmdtsupport', '1'),
    ('cmdtpackets', '16'),
    ('requestsupport', '1'),
    ('requestindication_cnt', '1'),
    ('rxindication_cnt', '2'),
    ('txindication_cnt', '1'),
    ('acknowledgeindication_cnt', '1');
-- Diagnostics
INSERT INTO J1939Settings VALUES
    ('diagsupport', '1'),
    ('dm_receivesize', '64'),
    ('dm_transmitsize', '64'),
    ('diagsupport_dm1', '1'),
    ('diagsupport_dm2', '1'),
    ('diagsupport_dm3', '1');
-- Safety data groups
INSERT INTO J1939Settings VALUES
    ('safetysupport', '1'),
    ('sdm_timer_interval', '10');

CREATE TABLE MiscSettings (item text unique, value text);
INSERT INTO MiscSettings VALUES
    ('CreateToolVersion', '3.11.2'),
    ('CreateToolName', 'CANopen Tessarine'),
    ('DatabaseVersion', '104'),
    ('SaveToolType', 'CANopen Tessarine'),
    ('SaveToolVersion', '3.11.2');

-- Groups ---------------------------------------------------------------------------------------------------
-- Times are milliseconds; the time behind a safe group is the one within which the next must come.

CREATE TEMP TABLE sample_groups (direction text, number integer, cycle integer, inhibit integer,
    priority integer, is_safe integer, validation_time integer, name text, description text);
INSERT INTO sample_groups VALUES
    ('rx', 61444,    0,   0, 3, 0,   0, 'Engine speed and load',
     'From the engine, each 20 ms.'),
    ('rx', 65262,    0,   0, 6, 0,   0, 'Engine temperatures',
     'From the engine, each second.'),
    ('rx', 65263,    0,   0, 6, 0,   0, 'Engine pressures',
     'From the engine, twice a second.'),
    ('rx', 65271,    0,   0, 6, 0,   0, 'Electrical supply',
     'From the engine, each second.'),
    ('rx', 65276,    0,   0, 6, 0,   0, 'Tank level',
     'From the cabin, each second.'),
    ('rx', 65280,    0,   0, 3, 0,   0, 'Left lever',
     'From the left armrest, each 20 ms: stick and swing.'),
    ('rx', 65281,    0,   0, 3, 0,   0, 'Right lever',
     'From the right armrest, each 20 ms: boom and bucket.'),
    ('rx', 65282,    0,   0, 3, 0,   0, 'Travel pedals',
     'From the cabin floor, each 20 ms.'),
    ('rx', 65283,    0,   0, 4, 0,   0, 'Boom sensor',
     'Each 50 ms.'),
    ('rx', 65284,    0,   0, 4, 0,   0, 'Stick sensor',
     'Each 50 ms.'),
    ('rx', 65285,    0,   0, 4, 0,   0, 'Bucket sensor',
     'Each 50 ms.'),
    ('rx', 65286,    0,   0, 4, 0,   0, 'Swing encoder',
     'Each 50 ms.'),
    ('rx', 65287,    0,   0, 6, 0,   0, 'Tool at the quick coupler',
     'On request: what is coupled.'),
    ('rx', 65290,   20,   0, 2, 1, 120, 'Safety lever',
     'Safe: the lever beside the seat locks the hydraulics.'),
    ('tx', 65300,   20,  10, 3, 0,   0, 'Pump demands',
     'To the pump controller.'),
    ('tx', 65301,   20,  10, 3, 0,   0, 'Valve demands, boom and stick',
     'To the main valve block.'),
    ('tx', 65302,   20,  10, 3, 0,   0, 'Valve demands, bucket and swing',
     'To the main valve block.'),
    ('tx', 65303,   20,  10, 3, 0,   0, 'Travel demands',
     'To the travel motors.'),
    ('tx', 65304,   50,  20, 3, 0,   0, 'Engine speed demand',
     'To the engine.'),
    ('tx', 65305,  200, 100, 6, 0,   0, 'Machine state',
     'To the cabin.'),
    ('tx', 65306, 1000,   0, 6, 0,   0, 'Working hours',
     'Each second.'),
    ('tx', 65307,    0,   0, 7, 0,   0, 'Identification of the controller',
     'On request, as the maker''s label tells it.'),
    ('tx', 65308,    0,   0, 7, 0,   0, 'Identification of the software',
     'On request.'),
    ('tx', 65310,   20,   0, 2, 1, 120, 'Hydraulics enabled',
     'Safe: the pilot valve opens only while this comes.');

-- Signals --------------------------------------------------------------------------------------------------
-- In the order of the frame. One without a variable is kept by the generated source.

CREATE TEMP TABLE sample_types (name text, number integer);
INSERT INTO sample_types VALUES
    ('B', 1), ('U8', 5), ('U16', 6), ('U32', 7), ('U24', 22), ('U40', 24), ('U48', 25), ('U2', 100), ('U4', 102),
    ('U6', 104), ('STRING_NULL', 120), ('STRING_ASTERISK', 121);

CREATE TEMP TABLE sample_signals (direction text, pgn integer, spn integer, type text, bits integer,
    variable text, value text, name text);
INSERT INTO sample_signals VALUES
    ('rx', 61444, 520192, 'U4', 0, '', '0', 'Torque mode'),
    ('rx', 61444, 520193, 'U4', 0, '', '0', 'Torque mode, fine'),
    ('rx', 61444, 520194, 'U8', 0, '', '0', 'Torque that the operator asks for'),
    ('rx', 61444, 520195, 'U8', 0, 'engine_load', '0', 'Engine load'),
    ('rx', 61444, 520196, 'U16', 0, 'engine_speed', '0', 'Engine speed'),
    ('rx', 61444, 520197, 'U8', 0, '', '0', 'Address that controls the engine'),
    ('rx', 61444, 520198, 'U4', 0, '', '0', 'Starter state'),
    ('rx', 61444, 520199, 'U4', 0, '', '0', 'Spare'),
    ('rx', 61444, 520200, 'U8', 0, '', '0', 'Torque that the engine asks for'),
    ('rx', 65262, 520201, 'U8', 0, 'coolant_temperature', '0', 'Coolant temperature'),
    ('rx', 65262, 520202, 'U8', 0, 'fuel_temperature', '0', 'Fuel temperature'),
    ('rx', 65262, 520203, 'U16', 0, 'oil_temperature', '0', 'Engine oil temperature'),
    ('rx', 65262, 520204, 'U16', 0, '', '0', 'Charger oil temperature'),
    ('rx', 65262, 520205, 'U8', 0, '', '0', 'Intercooler temperature'),
    ('rx', 65262, 520206, 'U8', 0, '', '0', 'Intercooler valve'),
    ('rx', 65263, 520207, 'U8', 0, '', '0', 'Fuel pressure'),
    ('rx', 65263, 520208, 'U8', 0, '', '0', 'Crankcase pressure'),
    ('rx', 65263, 520209, 'U8', 0, '', '0', 'Oil level'),
    ('rx', 65263, 520210, 'U8', 0, 'oil_pressure', '0', 'Engine oil pressure'),
    ('rx', 65263, 520211, 'U32', 0, '', '0', 'Spare'),
    ('rx', 65271, 520212, 'U8', 0, '', '0', 'Battery current'),
    ('rx', 65271, 520213, 'U8', 0, '', '0', 'Generator current'),
    ('rx', 65271, 520214, 'U16', 0, '', '0', 'Generator voltage'),
    ('rx', 65271, 520215, 'U16', 0, 'battery_voltage', '0', 'Battery voltage'),
    ('rx', 65271, 520216, 'U16', 0, '', '0', 'Voltage behind the key switch'),
    ('rx', 65276, 520217, 'U8', 0, '', '0', 'Washer fluid'),
    ('rx', 65276, 520218, 'U8', 0, 'tank_level', '0', 'Diesel in the tank'),
    ('rx', 65276, 520219, 'U48', 0, '', '0', 'Spare'),
    ('rx', 65280, 520220, 'U16', 0, 'lever_x[0]', '0', 'Left lever to the side'),
    ('rx', 65280, 520221, 'U16', 0, 'lever_y[0]', '0', 'Left lever forward'),
    ('rx', 65280, 520222, 'U2', 0, 'lever_trigger[0]', '0', 'Left trigger'),
    ('rx', 65280, 520223, 'U2', 0, 'lever_horn', '0', 'Horn button'),
    ('rx', 65280, 520224, 'U4', 0, '', '0', 'Left buttons, spare'),
    ('rx', 65280, 520225, 'U24', 0, '', '0', 'Spare'),
    ('rx', 65281, 520226, 'U16', 0, 'lever_x[1]', '0', 'Right lever to the side'),
    ('rx', 65281, 520227, 'U16', 0, 'lever_y[1]', '0', 'Right lever forward'),
    ('rx', 65281, 520228, 'U2', 0, 'lever_trigger[1]', '0', 'Right trigger'),
    ('rx', 65281, 520229, 'U6', 0, '', '0', 'Right buttons, spare'),
    ('rx', 65281, 520230, 'U24', 0, '', '0', 'Spare'),
    ('rx', 65282, 520231, 'U16', 0, 'pedal_left', '0', 'Left pedal'),
    ('rx', 65282, 520232, 'U16', 0, 'pedal_right', '0', 'Right pedal'),
    ('rx', 65282, 520233, 'U32', 0, '', '0', 'Spare'),
    ('rx', 65283, 520234, 'U16', 0, 'joint_angle[0]', '0', 'Boom angle'),
    ('rx', 65283, 520235, 'U16', 0, 'cylinder_pressure[0]', '0', 'Pressure in the boom cylinders'),
    ('rx', 65283, 520236, 'U8', 0, 'joint_state[0]', '0', 'State of the boom sensor'),
    ('rx', 65283, 520237, 'U24', 0, '', '0', 'Spare'),
    ('rx', 65284, 520238, 'U16', 0, 'joint_angle[1]', '0', 'Stick angle'),
    ('rx', 65284, 520239, 'U16', 0, 'cylinder_pressure[1]', '0', 'Pressure in the stick cylinder'),
    ('rx', 65284, 520240, 'U8', 0, 'joint_state[1]', '0', 'State of the stick sensor'),
    ('rx', 65284, 520241, 'U24', 0, '', '0', 'Spare'),
    ('rx', 65285, 520242, 'U16', 0, 'joint_angle[2]', '0', 'Bucket angle'),
    ('rx', 65285, 520243, 'U16', 0, 'cylinder_pressure[2]', '0', 'Pressure in the bucket cylinder'),
    ('rx', 65285, 520244, 'U8', 0, 'joint_state[2]', '0', 'State of the bucket sensor'),
    ('rx', 65285, 520245, 'U24', 0, '', '0', 'Spare'),
    ('rx', 65286, 520246, 'U32', 0, 'swing_position', '0', 'Position of the upper carriage'),
    ('rx', 65286, 520247, 'U16', 0, 'swing_speed', '0', 'Speed of the upper carriage'),
    ('rx', 65286, 520248, 'U16', 0, '', '0', 'Spare'),
    ('rx', 65287, 520249, 'STRING_ASTERISK', 160, 'tool_name', '0', 'Name of the tool'),
    ('rx', 65290, 520250, 'U8', 0, 'safety_lever', '0', 'Position of the safety lever'),
    ('rx', 65290, 520251, 'U8', 0, 'safety_lever_test', '0', 'Result of its self-test'),
    ('rx', 65290, 520252, 'U16', 0, 'safety_lever_age', '0', 'Time since the last test'),
    ('tx', 65300, 520300, 'U16', 0, 'pump_demand[0]', '0', 'Demand to pump 1'),
    ('tx', 65300, 520301, 'U16', 0, 'pump_demand[1]', '0', 'Demand to pump 2'),
    ('tx', 65300, 520302, 'U8', 0, 'pump_mode', '2', 'Power mode'),
    ('tx', 65300, 520303, 'U24', 0, '', '0', 'Spare'),
    ('tx', 65301, 520304, 'U16', 0, 'valve_demand[0]', '0', 'Boom valve'),
    ('tx', 65301, 520305, 'U16', 0, 'valve_demand[1]', '0', 'Stick valve'),
    ('tx', 65301, 520306, 'U32', 0, '', '0', 'Spare'),
    ('tx', 65302, 520307, 'U16', 0, 'valve_demand[2]', '0', 'Bucket valve'),
    ('tx', 65302, 520308, 'U16', 0, 'valve_demand[3]', '0', 'Swing valve'),
    ('tx', 65302, 520309, 'U32', 0, '', '0', 'Spare'),
    ('tx', 65303, 520310, 'U16', 0, 'travel_demand[0]', '0', 'Left track'),
    ('tx', 65303, 520311, 'U16', 0, 'travel_demand[1]', '0', 'Right track'),
    ('tx', 65303, 520312, 'U8', 0, 'travel_gear', '0', 'Gear of both tracks'),
    ('tx', 65303, 520313, 'U24', 0, '', '0', 'Spare'),
    ('tx', 65304, 520314, 'U16', 0, 'engine_speed_demand', '0', 'Speed that the machine needs'),
    ('tx', 65304, 520315, 'U2', 0, 'engine_idle', '0', 'Automatic idle'),
    ('tx', 65304, 520316, 'U6', 0, '', '0', 'Spare'),
    ('tx', 65304, 520317, 'U40', 0, '', '0', 'Spare'),
    ('tx', 65305, 520318, 'U8', 0, 'machine_state', '0', 'Step of the working cycle'),
    ('tx', 65305, 520319, 'B', 0, 'light_working', '0', 'Working light'),
    ('tx', 65305, 520320, 'B', 0, 'light_beacon', '0', 'Beacon'),
    ('tx', 65305, 520321, 'U6', 0, '', '0', 'Lights, spare'),
    ('tx', 65305, 520322, 'U16', 0, 'load_in_bucket', '0', 'Load in the bucket'),
    ('tx', 65305, 520323, 'U32', 0, '', '0', 'Spare'),
    ('tx', 65306, 520324, 'U32', 0, 'hours_engine', '0', 'Hours with running engine'),
    ('tx', 65306, 520325, 'U32', 0, 'hours_travel', '0', 'Hours of travel'),
    ('tx', 65307, 520326, 'STRING_ASTERISK', 240, 'controller_label', 'EX-220 main controller*', 'Text of the label'),
    ('tx', 65308, 520327, 'STRING_NULL', 128, 'software_name', 'EX-220 4.2', 'Name and version'),
    ('tx', 65310, 520328, 'U8', 0, 'hydraulics_enabled', '0', 'State of the pilot valve'),
    ('tx', 65310, 520329, 'U8', 0, 'hydraulics_reason', '0', 'Reason for a lock'),
    ('tx', 65310, 520330, 'U16', 0, 'hydraulics_pressure', '0', 'Pilot pressure');

-- The project ----------------------------------------------------------------------------------------------

CREATE TABLE Strings (id integer primary key, string text);
CREATE TABLE Nodes (nodeId integer primary key, name text, edspath text, xddpath text, dcfpath text,
    tpdocnt integer, rpdocnt integer, ismaster integer, issyncproducer integer, issyncconsumer integer,
    ishbconsumer integer, isemergencyproducer integer, isemergencyconsumer integer,
    ismpdosupported integer, iscanopengateway integer, allpdosstatic integer, excludegeneration integer,
    generatedcf integer, prefix text, outputpath text, iconpath text, isbootupmanager integer,
    isconfigmanager integer, excludepdolinking integer, multilinedata integer, lssslave );
CREATE TABLE DescriptionSettings (item text unique, value text);
CREATE TABLE EnergyBusSettings (item text unique, value text);
CREATE TABLE Connections (prodnode integer, prodindex integer, prodsub integer, connode integer,
    conindex integer, consub integer, priority integer);
CREATE TABLE LockedMappings (node integer, pdoindex integer);
CREATE TABLE LockedPDOs (node integer, pdoindex integer);
CREATE TABLE VirtualNodes (virtualnodeid integer primary key, line integer, dbnodeid integer,
    name text);
CREATE TABLE SignalGroups (sigid integer primary key, name text);
CREATE TABLE Signals (sigid integer primary key, nodeid integer, name integer, datatype integer not null,
    accesstype text not null, defaultvalue text, signalgroup integer, ref integer, transmittype integer,
    transmittrigger integer, eventtimer integer, syncvalue integer, syncstartvalue integer,
    routing integer);
CREATE TABLE Groups (name text, nodeidlist text);
CREATE TABLE Objects0 (objectindex integer primary key, name integer, datatype integer not null,
    objecttype integer not null, description integer, category integer, device_class integer,
    fwsupported integer, metadata blob);
CREATE TABLE SubObjects0 (objectindex integer not null, subindex integer not null, name integer,
    datatype integer not null, accesstype text not null, defaultvalue text, currentvalue text,
    pdomapping integer, lowlimit text, uplimit text, size integer, defaultineds integer,
    limitineds integer, refuseread integer, refusewrite integer, allowedaccesstypes text,
    implementation integer not null, varname text, description integer, category integer,
    writedefaulttoeds integer, cyclicread integer, dcfcomponent integer, changedbyuser integer,
    wizardsource integer, denotation integer, sharedlines integer, managedbyolm integer,
    signalid integer, nvstorage integer, metadata blob, UNIQUE(objectindex,subindex));
CREATE TABLE PGNs0 (number integer not null, edp_dp_key integer, priority integer, cycletime_ms integer,
    inhibittime_ms integer, mappingcount integer, direction integer, name integer, desc integer,
    issafe integer, srvt_ms integer, FD_TrailerFormat integer, FD_AssuranceType integer,
    FD_AssuranceDataSize integer);
CREATE TABLE SPNs0 (pgnnumber integer not null, spnnumber integer not null, datatype integer,
    implementation integer, varname text, defaultvalue text, name integer, desc integer, pos integer,
    bitsize integer, direction integer, slot_df integer);
CREATE TABLE CANIDs0 (id integer not null, cycletime_ms integer, inhibittime_ms integer,
    mappingcount integer, direction integer, name integer, desc integer);
CREATE TABLE DataElements0 (canid integer not null, number integer not null, datatype integer,
    implementation integer, varname text, defaultvalue text, name integer, desc integer, pos integer,
    bitsize integer, direction integer);
CREATE TABLE UDSSettings0 (sid integer not null, active integer, sessions text, userlevels text,
    UNIQUE(sid));

INSERT INTO Nodes (nodeId, prefix, outputpath) VALUES (0, '_', '');
INSERT INTO Strings (string)
    SELECT name FROM sample_groups UNION SELECT description FROM sample_groups UNION SELECT name FROM sample_signals
    UNION SELECT '';
INSERT INTO PGNs0
    SELECT g.number, 0, g.priority, g.cycle, g.inhibit,
        (SELECT count(*) FROM sample_signals s WHERE s.pgn = g.number AND s.direction = g.direction),
        iif(g.direction = 'tx', 85, 119),
        (SELECT id FROM Strings WHERE string = g.name), (SELECT id FROM Strings WHERE string = g.description),
        g.is_safe, g.validation_time, 0, 0, 0
    FROM sample_groups g;
INSERT INTO SPNs0
    SELECT s.pgn, s.spn, (SELECT number FROM sample_types t WHERE t.name = s.type),
        iif(s.variable = '', 0, 2), s.variable, s.value,
        (SELECT id FROM Strings WHERE string = s.name), (SELECT id FROM Strings WHERE string = ''),
        row_number() OVER (PARTITION BY s.direction, s.pgn ORDER BY s.rowid) - 1, s.bits,
        iif(s.direction = 'tx', 85, 119), 0
    FROM sample_signals s;
COMMIT;
