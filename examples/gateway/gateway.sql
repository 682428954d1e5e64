-- A gateway with three CAN lines: drives and sensors of a machine on CANopen (0), its engine on J1939 (1), and
-- a battery that speaks plain CAN messages (2). A service tool reaches the diagnostic services of the device
-- over line 2. The sqlite3 program makes a project of it, see scripts/demo.
--
-- What the lines carry stands in tables that are easy to read and to change; the end of the file makes the
-- tables of the project of them.

BEGIN;

-- Settings -------------------------------------------------------------------------------------------------
-- A value for each line, where there are commas.

CREATE TABLE GeneralSettings (item text unique, value text);
INSERT INTO GeneralSettings VALUES
    ('line0type', '1'),
    ('line1type', '2'),
    ('line2type', '4'),
    ('co_node_id', '32,0,0'),
    ('co_node_id_fct', 'NULL,NULL,NULL'),
    ('nmtmaster', '0'),
    ('overwrite_predef', '0,0,0'),
    ('receivebuffersize', '20,30,10'),
    ('transmitbuffersize', '10,10,5'),
    ('co_timer_interval', '1000'),
    ('new_init_structure', '1'),
    ('init_static_variables', '1'),
    ('applicationheader', 'gateway_variables.h');
-- Functions that the application registers
INSERT INTO GeneralSettings VALUES
    ('enable_dynamic', '1'),
    ('event_can', '1'),
    ('event_nmt', '1'),
    ('event_pdo', '2'),
    ('rxindication_cnt', '2'),
    ('txindication_cnt', '1'),
    ('changedindication_cnt', '1');
-- Diagnostics
INSERT INTO GeneralSettings VALUES
    ('isotp_supported', '1'),
    ('isotp_connection_cnt', '2'),
    ('isotp_client_con', '0,0,0'),
    ('isotp_server_con', '0,0,2'),
    ('isotp_dyn_server_ind', '1'),
    ('udsserver_supported', '1'),
    ('udsserver_version', '1'),
    ('uds_server_active', '0,0,1'),
    ('uds_physical_request_id', '0,0,0x7E2'),
    ('uds_physical_response_id', '0,0,0x7EA'),
    ('uds_functional_request_id', '0,0,0x7DF'),
    ('uds_seedkey_length', '4'),
    ('uds_session_timeout', '5000'),
    ('uds_only_appl_session_check', '0'),
    ('uds_only_appl_security_check', '1');

CREATE TABLE J1939Settings (item text unique, value text);
INSERT INTO J1939Settings VALUES
    ('identitynumber', '0,815,0'),
    ('manufacturercode', '0,2046,0'),
    ('ecuinstance', '0,0,0'),
    ('functioninstance', '0,0,0'),
    ('function', '0,130,0'),
    ('vehiclesystem', '0,25,0'),
    ('vehicleinstance', '0,0,0'),
    ('industrygroup', '0,3,0'),
    ('addresscapable', '0,1,0'),
    ('startaddress', '0,39,0'),
    ('requestsupport', '1'),
    ('requestindication_cnt', '1'),
    ('rxindication_cnt', '1');

CREATE TABLE MiscSettings (item text unique, value text);
INSERT INTO MiscSettings VALUES
    ('CreateToolVersion', '3.11.2'),
    ('CreateToolName', 'CANopen Tessarine'),
    ('DatabaseVersion', '104'),
    ('SaveToolType', 'CANopen Tessarine'),
    ('SaveToolVersion', '3.11.2');

-- Line 0: CANopen ------------------------------------------------------------------------------------------
-- Codes: 7 variable, 8 array, 9 record. Types: 5, 6 and 7 are unsigned of 8, 16 and 32 bits. Places: managed,
-- const, or the name of a variable of the application. What has a direction can be mapped.

CREATE TEMP TABLE sample_objects (number integer, code integer, name text);
INSERT INTO sample_objects VALUES
    (0x1000, 7, 'Device type'),
    (0x1001, 7, 'Error register'),
    (0x1017, 7, 'Producer heartbeat time'),
    (0x1018, 9, 'Identity object'),
    (0x1400, 9, 'Receive PDO 1 parameter'),
    (0x1600, 9, 'Receive PDO 1 mapping'),
    (0x1800, 9, 'Transmit PDO 1 parameter'),
    (0x1a00, 9, 'Transmit PDO 1 mapping'),
    (0x2000, 7, 'State of the gateway'),
    (0x2100, 8, 'Drive speeds'),
    (0x2200, 9, 'Battery');

CREATE TEMP TABLE sample_entries (number integer, sub integer, type integer, access text, value text, place text,
    direction text, name text);
INSERT INTO sample_entries VALUES
    (0x1000, 0, 7, 'const', '0x00000000', 'const', '', 'Device type'),
    (0x1001, 0, 5, 'ro', '0', 'managed', '', 'Error register'),
    (0x1017, 0, 6, 'rw', '500', 'managed', '', 'Producer heartbeat time'),
    (0x1018, 0, 5, 'const', '4', 'const', '', 'Highest subindex supported'),
    (0x1018, 1, 7, 'ro', '0x00f0e1d2', 'const', '', 'Vendor-ID'),
    (0x1018, 2, 7, 'ro', '0x00047001', 'const', '', 'Product code'),
    (0x1018, 3, 7, 'ro', '0x00010000', 'const', '', 'Revision number'),
    (0x1018, 4, 7, 'ro', '0', 'managed', '', 'Serial number'),
    (0x1400, 0, 5, 'const', '2', 'const', '', 'Highest subindex supported'),
    (0x1400, 1, 7, 'rw', '$NODEID+0x200', 'managed', '', 'COB-ID'),
    (0x1400, 2, 5, 'rw', '255', 'managed', '', 'Transmission type'),
    (0x1600, 0, 5, 'const', '2', 'const', '', 'Number of mapped objects'),
    (0x1600, 1, 7, 'const', '0x21000110', 'const', '', 'Mapped object 1'),
    (0x1600, 2, 7, 'const', '0x21000210', 'const', '', 'Mapped object 2'),
    (0x1800, 0, 5, 'const', '5', 'const', '', 'Highest subindex supported'),
    (0x1800, 1, 7, 'rw', '$NODEID+0x180', 'managed', '', 'COB-ID'),
    (0x1800, 2, 5, 'rw', '255', 'managed', '', 'Transmission type'),
    (0x1800, 3, 6, 'rw', '10', 'managed', '', 'Inhibit time'),
    (0x1800, 5, 6, 'rw', '200', 'managed', '', 'Event timer'),
    (0x1a00, 0, 5, 'const', '3', 'const', '', 'Number of mapped objects'),
    (0x1a00, 1, 7, 'const', '0x20000008', 'const', '', 'Mapped object 1'),
    (0x1a00, 2, 7, 'const', '0x22000110', 'const', '', 'Mapped object 2'),
    (0x1a00, 3, 7, 'const', '0x22000208', 'const', '', 'Mapped object 3'),
    (0x2000, 0, 5, 'ro', '0', 'gateway_state', 'TPDO', 'State of the gateway'),
    (0x2100, 0, 5, 'const', '2', 'const', '', 'Number of entries'),
    (0x2100, 1, 6, 'rww', '0', 'drive_speed[0]', 'RPDO', 'Speed of drive 1'),
    (0x2100, 2, 6, 'rww', '0', 'drive_speed[1]', 'RPDO', 'Speed of drive 2'),
    (0x2200, 0, 5, 'const', '2', 'const', '', 'Highest subindex supported'),
    (0x2200, 1, 6, 'ro', '0', 'battery_voltage', 'TPDO', 'Voltage'),
    (0x2200, 2, 5, 'ro', '0', 'battery_charge', 'TPDO', 'Charge');

-- Lines 1 and 2: parameter groups and CAN identifiers ------------------------------------------------------
-- Times are milliseconds. Signals stand in the order of the frame; one without a variable is kept by the
-- generated source, and a variable may serve several lines.

CREATE TEMP TABLE sample_frames (line integer, direction text, number integer, cycle integer, inhibit integer,
    name text);
INSERT INTO sample_frames VALUES
    (1, 'rx', 61444,   0,  0, 'Engine speed and load'),
    (1, 'rx', 65262,   0,  0, 'Engine temperatures'),
    (1, 'tx', 65300,  20, 10, 'Demands of the drives'),
    (2, 'rx',   288,   0,  0, 'Battery state'),
    (2, 'rx',   289,   0,  0, 'Battery cells'),
    (2, 'tx',   272, 100, 20, 'Battery command');

CREATE TEMP TABLE sample_signals (line integer, direction text, frame integer, number integer, type integer,
    bits integer, variable text, name text);
INSERT INTO sample_signals VALUES
    (1, 'rx', 61444, 520192, 5,  8, '', 'Torque mode'),
    (1, 'rx', 61444, 520193, 6, 16, 'engine_speed', 'Engine speed'),
    (1, 'rx', 61444, 520194, 5,  8, 'engine_load', 'Engine load'),
    (1, 'rx', 61444, 520195, 7, 32, '', 'Engine, spare'),
    (1, 'rx', 65262, 520196, 5,  8, 'coolant_temperature', 'Coolant temperature'),
    (1, 'rx', 65262, 520197, 5,  8, '', 'Fuel temperature'),
    (1, 'rx', 65262, 520198, 6, 16, '', 'Oil temperature'),
    (1, 'rx', 65262, 520199, 7, 32, '', 'Temperatures, spare'),
    (1, 'tx', 65300, 520300, 6, 16, 'drive_speed[0]', 'Demand of drive 1'),
    (1, 'tx', 65300, 520301, 6, 16, 'drive_speed[1]', 'Demand of drive 2'),
    (1, 'tx', 65300, 520302, 7, 32, '', 'Demands, spare'),
    (2, 'rx', 288, 1, 6, 16, 'battery_voltage', 'Voltage in 10 mV'),
    (2, 'rx', 288, 2, 6, 16, 'battery_current', 'Current in 100 mA'),
    (2, 'rx', 288, 3, 5,  8, 'battery_charge', 'Charge in percent'),
    (2, 'rx', 288, 4, 5,  8, '', 'Battery, spare'),
    (2, 'rx', 289, 1, 6, 16, 'cell_lowest', 'Lowest cell in mV'),
    (2, 'rx', 289, 2, 6, 16, 'cell_highest', 'Highest cell in mV'),
    (2, 'tx', 272, 1, 5,  8, 'battery_command', 'Close or open the contactor'),
    (2, 'tx', 272, 2, 5,  8, '', 'Rolling count');

-- Line 2: diagnostic services ------------------------------------------------------------------------------

CREATE TEMP TABLE sample_services (sid integer, sessions text, userlevels text);
INSERT INTO sample_services VALUES
    (0x10, '1,2,3', ''),
    (0x11, '1,3', ''),
    (0x22, '1,2,3', ''),
    (0x27, '2,3', ''),
    (0x2e, '3', '1'),
    (0x31, '3', '1,2'),
    (0x3e, '1,2,3', '');

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

CREATE TABLE Objects1 (objectindex integer primary key, name integer, datatype integer not null,
    objecttype integer not null, description integer, category integer, device_class integer,
    fwsupported integer, metadata blob);
CREATE TABLE SubObjects1 (objectindex integer not null, subindex integer not null, name integer,
    datatype integer not null, accesstype text not null, defaultvalue text, currentvalue text,
    pdomapping integer, lowlimit text, uplimit text, size integer, defaultineds integer,
    limitineds integer, refuseread integer, refusewrite integer, allowedaccesstypes text,
    implementation integer not null, varname text, description integer, category integer,
    writedefaulttoeds integer, cyclicread integer, dcfcomponent integer, changedbyuser integer,
    wizardsource integer, denotation integer, sharedlines integer, managedbyolm integer,
    signalid integer, nvstorage integer, metadata blob, UNIQUE(objectindex,subindex));
CREATE TABLE PGNs1 (number integer not null, edp_dp_key integer, priority integer, cycletime_ms integer,
    inhibittime_ms integer, mappingcount integer, direction integer, name integer, desc integer,
    issafe integer, srvt_ms integer, FD_TrailerFormat integer, FD_AssuranceType integer,
    FD_AssuranceDataSize integer);
CREATE TABLE SPNs1 (pgnnumber integer not null, spnnumber integer not null, datatype integer,
    implementation integer, varname text, defaultvalue text, name integer, desc integer, pos integer,
    bitsize integer, direction integer, slot_df integer);
CREATE TABLE CANIDs1 (id integer not null, cycletime_ms integer, inhibittime_ms integer,
    mappingcount integer, direction integer, name integer, desc integer);
CREATE TABLE DataElements1 (canid integer not null, number integer not null, datatype integer,
    implementation integer, varname text, defaultvalue text, name integer, desc integer, pos integer,
    bitsize integer, direction integer);
CREATE TABLE UDSSettings1 (sid integer not null, active integer, sessions text, userlevels text,
    UNIQUE(sid));

CREATE TABLE Objects2 (objectindex integer primary key, name integer, datatype integer not null,
    objecttype integer not null, description integer, category integer, device_class integer,
    fwsupported integer, metadata blob);
CREATE TABLE SubObjects2 (objectindex integer not null, subindex integer not null, name integer,
    datatype integer not null, accesstype text not null, defaultvalue text, currentvalue text,
    pdomapping integer, lowlimit text, uplimit text, size integer, defaultineds integer,
    limitineds integer, refuseread integer, refusewrite integer, allowedaccesstypes text,
    implementation integer not null, varname text, description integer, category integer,
    writedefaulttoeds integer, cyclicread integer, dcfcomponent integer, changedbyuser integer,
    wizardsource integer, denotation integer, sharedlines integer, managedbyolm integer,
    signalid integer, nvstorage integer, metadata blob, UNIQUE(objectindex,subindex));
CREATE TABLE PGNs2 (number integer not null, edp_dp_key integer, priority integer, cycletime_ms integer,
    inhibittime_ms integer, mappingcount integer, direction integer, name integer, desc integer,
    issafe integer, srvt_ms integer, FD_TrailerFormat integer, FD_AssuranceType integer,
    FD_AssuranceDataSize integer);
CREATE TABLE SPNs2 (pgnnumber integer not null, spnnumber integer not null, datatype integer,
    implementation integer, varname text, defaultvalue text, name integer, desc integer, pos integer,
    bitsize integer, direction integer, slot_df integer);
CREATE TABLE CANIDs2 (id integer not null, cycletime_ms integer, inhibittime_ms integer,
    mappingcount integer, direction integer, name integer, desc integer);
CREATE TABLE DataElements2 (canid integer not null, number integer not null, datatype integer,
    implementation integer, varname text, defaultvalue text, name integer, desc integer, pos integer,
    bitsize integer, direction integer);
CREATE TABLE UDSSettings2 (sid integer not null, active integer, sessions text, userlevels text,
    UNIQUE(sid));

INSERT INTO Nodes (nodeId, prefix, outputpath) VALUES (0, '_', ''), (1, '_', ''), (2, '_', '');
INSERT INTO Strings (string)
    SELECT name FROM sample_objects UNION SELECT name FROM sample_entries UNION SELECT name FROM sample_frames
    UNION SELECT name FROM sample_signals UNION SELECT '';
CREATE TEMP VIEW texts AS SELECT id, string FROM Strings;

INSERT INTO Objects0 (objectindex, name, datatype, objecttype, description, category)
    SELECT o.number, t.id, ifnull((SELECT max(type) FROM sample_entries e WHERE e.number = o.number AND o.code <> 9), 5),
        o.code, (SELECT id FROM texts WHERE string = ''), 1
    FROM sample_objects o JOIN texts t ON t.string = o.name;
INSERT INTO SubObjects0 (objectindex, subindex, name, datatype, accesstype, defaultvalue, currentvalue, pdomapping,
        lowlimit, uplimit, size, defaultineds, limitineds, refuseread, refusewrite, allowedaccesstypes,
        implementation, varname, description, category, writedefaulttoeds)
    SELECT e.number, e.sub, t.id, e.type, e.access, e.value, '',
        CASE e.direction WHEN 'RPDO' THEN 3 WHEN 'TPDO' THEN 4 ELSE 0 END,
        '0', '0', 0, 1, 0, 0, 0, 'const,ro,rw,wo,rww,rwr',
        CASE e.place WHEN 'managed' THEN 0 WHEN 'const' THEN 1 ELSE 2 END,
        iif(e.place IN ('managed', 'const'), '', e.place), (SELECT id FROM texts WHERE string = ''), 1, 1
    FROM sample_entries e JOIN texts t ON t.string = e.name;

-- Of both kinds of frames
CREATE TEMP VIEW frames AS
    SELECT f.line, f.number, f.cycle, f.inhibit, iif(f.direction = 'tx', 85, 119) AS direction, t.id AS name,
        (SELECT id FROM texts WHERE string = '') AS desc,
        (SELECT count(*) FROM sample_signals s
            WHERE s.line = f.line AND s.frame = f.number AND s.direction = f.direction) AS signals
    FROM sample_frames f JOIN texts t ON t.string = f.name;
CREATE TEMP VIEW elements AS
    SELECT s.line, s.frame, s.number, s.type, iif(s.variable = '', 0, 2) AS implementation, s.variable, t.id AS name,
        (SELECT id FROM texts WHERE string = '') AS desc, s.bits, iif(s.direction = 'tx', 85, 119) AS direction,
        row_number() OVER (PARTITION BY s.line, s.direction, s.frame ORDER BY s.rowid) - 1 AS pos
    FROM sample_signals s JOIN texts t ON t.string = s.name;
INSERT INTO PGNs1
    SELECT number, 0, 3, cycle, inhibit, signals, direction, name, desc, 0, 0, 0, 0, 0 FROM frames WHERE line = 1;
INSERT INTO SPNs1
    SELECT frame, number, type, implementation, variable, '0', name, desc, pos, 0, direction, 0
    FROM elements WHERE line = 1;
INSERT INTO CANIDs2 SELECT number, cycle, inhibit, signals, direction, name, desc FROM frames WHERE line = 2;
INSERT INTO DataElements2
    SELECT frame, number, type, implementation, variable, '0', name, desc, pos, bits, direction
    FROM elements WHERE line = 2;

-- The other lines keep a service each, since a line without any would get the usual ones.
INSERT INTO UDSSettings0 VALUES (0x3e, 1, '1', '');
INSERT INTO UDSSettings1 VALUES (0x3e, 1, '1', '');
INSERT INTO UDSSettings2 SELECT sid, 1, sessions, userlevels FROM sample_services;
COMMIT;
