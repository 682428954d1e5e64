// The projects whose generated C is compiled and run. What each switches on stands in its rows; see
// projecttext.h for their form.
#pragma once

constexpr const char *kDevice = R"(
    set init_static_variables=1 co_timer_interval=1000
    1000:0 U32 const 1 0x000F0191
    1001:0 U8  ro    0 0 map
    1017:0 U16 rw    0 250
    1018:0 U8  const 1 2
    1018:1..2 U32 const 1 0x1234,7
)";

constexpr const char *kSecondLine = R"(
    line %1
    1000:0 U32 const 1 0x000F0191
    1001:0 U8  ro    0 3
    1017:0 U16 rw    0 99
    1018:0 U8  const 1 1
    1018:1 U32 const 1 %1
    1018 rec
    2000:0 U16 rw    0 %1
    2001:0 U32 rw    2 0 var=onLine%1 map
    pdo 1800 $NODEID+0x180 2%1
    1a00:0 U8  const 1 2
    1a00:1..2 U32 const 1 0x20000010,0x20010020
    pdo 1400 $NODEID+0x200 255
    1600:0 U8  const 1 1
    1600:1 U32 const 1 0x20010020
)";

constexpr const char *kPdos = R"(
    2100:0 U8  rw 0 17 map
    2101:0 U16 rw 2 0 map var=levels[2]
    2102:0 U8  const 1 4
    2102:1 B rw 0 1 map
    2102:2 U2  rw 0 3 map
    2102:3 U3  rw 0 5 map
    2102:4 U4  rw 0 9 map
    2103:0 U32 const 1 77 map
    2104:0 U24 rw 0 0x123456 map
    2105:0 I24 rw 2 -5 map var=offset24
    2106:0 R32 rw 0 1.5 map
    2107:0 VS  rw 2 abc map size=8 var=label
    2108:0 U64 rw 0 0x1122334455667788 map
    2109:0 I64 rw 0 5 map
    pdo 1800 $NODEID+0x180 1 30 500 9
    1a00:0 U8  const 1 5
    1a00:1..5 U32 const 1 0x21000008,0x21010010,0x21020101,0x21020202,0x21030020
    pdo 1801 0x281 255
    1a01:0 U8  rw 0 2
    1a01:1..2 U32 rw 0 0x21000008,0x21010010
    pdo 1802 0x80000381
    1a02:0 U8  const 1 0
    pdo 1803 $NODEID+0x480 254
    1a03:0 U8  const 1 254
    1a03:1 U32 const 1 0x21040018
    pdo 1804 0x190 254
    pdo 1805 0x191 254
    1a05:0 U8  const 1 6
    1a05:1..6 U32 const 1 0x21050018,0x21060020,0x21070040,0x21080040,0x00050008,0x21090040
    pdo 1400 $NODEID+0x200 255 11 12
    1600:0 U8  const 1 3
    1600:1..3 U32 const 1 0x21000008,0x21010010,0x21030020
    pdo 1401 $NODEID+0x300 1
    1601:0 U8  const 1 2
    1601:1..2 U32 const 1 0x21000008,0x21010010
    pdo 1402 0x401 1
    1602:0 U8  const 1 0
    pdo 1403 0x402 1
    1603:0 U8  const 1 65
    1603:1 U32 const 1 0x21080040
    pdo 1404 0x403 1
    1604:0 U8  rw 0 1
    1604:1 U32 rw 0 0x21000008
    1405:0 U8  const 1 2
    1405:1 U32 rw 0 0x404
    1405:2 U16 rw 0 1
    1605:0 U8  const 1 1
    1605:1 U32 const 1 0x21020202
)";

/// Values of all types: in the dictionary's own arrays, as constants, in the application.
constexpr const char *kTypes = R"(
    set limit_check=1 compact_array_description=1 generate_string_defaults=1 overwrite_predef=1
    2200:0 U8 const 1 19
    2200 rec
    2200:1 B rw 0 1
    2200:2 U8  rw 0 0xFF lim=0..0xFF
    2200:3 U16 rww 0 65535 map lim=1..65535 nv
    2200:4 U24 rw 0 0xABCDEF
    2200:5 U32 wo 0 4294967295 lim=0..4294967295
    2200:6 U40 rw 0 0x0102030405
    2200:7 U48 rw 0 0x010203040506
    2200:8 U64 rw 0 18446744073709551615
    2200:9 I8  rwr 0 -128 map lim=-128..127
    2200:10 I16 rw 0 -32768 lim=-32768..-1
    2200:11 I32 rw 0 -2147483648 lim=-2147483648..2147483647 nodef
    2200:12 R32 rw 0 -0.25 lim=-1.5..2.5
    2200:13 TIME_OF_DAY rw 0 77
    2200:14 I24 rw 0 -2
    2200:15 U7 rw 0 100 lim=0..127
    2200:16 U9 rw 0 300 lim=0..511
    2200:17 R64 rw 0 1
    2200:18 U16 ro 0 $nodeid+0x10
    2200:19 U8 rw 0 text
    2201:0 U8 const 1 20
    2201 rec
    2201:1 B const 1 1
    2201:2 U8  ro 1 0xFF
    2201:3 U16 const 1 65535 map
    2201:4 U24 const 1 0xABCDEF
    2201:5 U32 const 1 4294967295
    2201:6 U40 const 1 0x0102030405
    2201:7 U48 const 1 0x010203040506
    2201:8 U64 const 1 18446744073709551615
    2201:9 I8  const 1 -128
    2201:10 I16 const 1 -32768
    2201:11 I32 const 1 -2147483648
    2201:12 R32 const 1 12.625
    2201:13 TIME_OF_DAY const 1 77
    2201:14 VS const 1 a"b%20\"c size=7
    2201:15 OS const 1 |x4142ff size=3
    2201:16 UTF8 const 1 Größe size=7
    2201:17 VS const 1 what??!%20100% size=13
    2201:18 VS const 1 - size=0
    2201:19 DOMAIN const 1 -
    2201:20 VS const 1 C:\dir\ size=7
    2202:0 U8 const 1 17
    2202 rec
    2202:1 B rw 2 1 var=flag
    2202:2 U8  rw 2 5 var=CELL_OF(3) lim=0..9
    2202:3 U16 rw 2 65535 var=row[${sub}]
    2202:4 U24 rw 2 0xABCDEF var=CELL24_OF(1)
    2202:5 U32 rw 2 4294967295 var=v5 lim=5..4294967295
    2202:6 U40 rw 2 0x0102030405 var=v6
    2202:7 U48 rw 2 0x010203040506 var=v7
    2202:8 U64 rw 2 18446744073709551615 var=v8
    2202:9 I8  rw 2 -128 var=v9
    2202:10 I16 rw 2 -32768 var=v10
    2202:11 I32 rw 2 -2147483648 var=v11 lim=-5..5
    2202:12 R32 rw 2 -0.25 var=v12_${index}
    2202:13 I24 rw 2 -1 var=v13
    2202:14 VS rw 2 hello var=text14 size=8
    2202:15 OS rw 2 |x00010203ff var=octets15 size=4
    2202:16 UTF8 rw 2 é var=text16 size=16
    2202:17 VS rw 2 */%20long var=texts_${sub} size=6
    2203:0 DOMAIN rw 0 -
    2203 dom
    2204:0 DOMAIN rw 2 - var=unused1 size=100
    2204 dom
    2205:0 DOMAIN rw 2 - var=unused2 size=100
    2205 dom
    2206:0 U8 const 1 4
    2206:1..4 U16 rw 0 3,3,3,3 map
    2207:0 U8 const 1 4
    2207 rec
    2207:1..4 U8 rw 2 0,0,0,0 var=run[${sub}]
    2208:0 U8 const 1 3
    2208:1..3 U8 rw 0 1,2,2
    2209:0 U8 const 1 3
    2209:1..3 VS const 1 same,same,same size=4
    220a:0 U8 const 1 4
    220a:2..4 U8 rw 0 1,1,1
    220b:0 U8 const 1 6
    220b:1..2 U8 rw 0 1,1
    220b:5..6 U8 rw 0 1,1
    220c:0 U8 const 1 2
    220c 6
    220c:1 U8 rw 0 1
    220d:0 U8 ro 0 1
    220d 5
    1606:0 U8 rw 0 3
    1606:1..3 U32 rw 0 0x00050008,0x00050008,0x00050008
    1286:0 U8 const 1 2
    1286:1..2 U32 rw 0 0x600,0x600
    220e:0 U8 const 1 255
    220e:1 U8 rw 0 1
    220e:255 U8 rw 0 2
)";

/// Each object that a service of the stack has a say in.
constexpr const char *kServices = R"(
    1003:0 U8 rw 0 0
    1003:1..3 U32 ro 0 0,0,0
    1005:0 U32 rw 0 0x40000080
    1006:0 U32 rw 0 1000
    1008:0 VS const 1 device size=6
    100c:0 U16 rw 0 100
    100d:0 U8 rw 0 3
    1010:0 U8 const 1 1
    1010:1 U32 rw 0 1
    1011:0 U8 const 1 1
    1011:1 U32 rw 0 1
    1012:0 U32 rw 0 0x80000100
    1014:0 U32 rw 0 $NODEID+0x80
    1015:0 U16 rw 0 5
    1016:0 U8 ro 0 2
    1016:1..2 U32 rw 0 0x000503E8,0x000603E8
    1019:0 U8 rw 0 240
    1028:0 U8 ro 0 2
    1028:1..2 U32 rw 0 0x85,0x86
    1029:0 U8 const 1 2
    1029:1..2 U8 rw 0 1,2
    102a:0 U16 rw 0 10
    1200:0 U8 const 1 2
    1200:1..2 U32 ro 0 $NODEID+0x600,$NODEID+0x580
    1200 rec
    1201:0 U8 const 1 3
    1201:1..2 U32 rw 0 $NODEID+0x610,0x80000591
    1201:3 U8 rw 0 2
    1280:0 U8 const 1 3
    1280:1..2 U32 rw 0 0x620,0x5A0
    1280:3 U8 rw 0 32
    1300:0 U8 rw 0 1
    1301:0 U8 ro 0 6
    1301:1 U8 rw 0 1
    1301:2 U16 rw 0 50
    1301:3..4 U8 rw 0 20,254
    1301:5..6 U32 rw 0 $NODEID+$NODEID+0xFF,$NODEID+$NODEID+0x100
    1381:0 U8 rw 0 2
    1381:1..2 U32 rw 0 0x22020520,0x22020b20
    13fe:0 U8 rw 0 0xA5
    13ff:0 U8 const 1 1
    13ff:1 U16 rw 0 0x1234
    1f10:0 U8 rw 0 1
    1f11:0 U8 rw 0 1
    1f80:0 U32 rw 0 0x21
    1f81:0 U8 rw 0 2
    1f81:1..2 U32 rw 0 9,9
    1f90:0 U8 const 1 1
    1f90:1 U16 rw 0 100
    set max_slave_assignment=5 bootup_manager=1 lss_supported=1 idnego_supported=1 event_led=1
    set event_store=1 isotp_connection_cnt=1 sdo_blocktransfer_supported=1
    set sdo_client_queue_supported=1 co_srdo_interval=500 object_changed_event=2 event_nmt=1
)";

constexpr const char *kIndicationSettings = R"(
    set fct_sdo_server_read=onRead fct_sdo_server_write=onWrite fct_sdo_server_check_write=onCheck
    set fct_pdo=onPdo fct_pdo_receive=onPdoReceived fct_pdo_sync=onPdoSync
    fct_nmt=  onNmt
    set fct_errctrl=onErrCtrl fct_sync=onSync fct_sync_finished=onSyncFinished
    set fct_led_green=onGreen fct_led_red=onRed fct_can=onCan fct_cfgman=onConfiguration
    set fct_flyma=onFlyingMaster fct_sdo_client_read=onClientRead
    set fct_sdo_client_write=onClientWrite fct_emcy=onEmcy fct_emcy_consumer=onEmcyReceived
    set fct_time=onTime fct_store=onStore fct_lss=onLss fct_lss_master=onLssMaster fct_comm=onComm
    set fct_manager=onManager fct_mpdo=onMpdo usdo_server_enabled=1
    usdo_server_read_ind_function=onUsdoRead
    usdo_server_read_finished_ind_function=onUsdoReadFinished
    set usdo_server_write_ind_function=onUsdoWrite usdo_server_ind_check_write_function=onUsdoCheck
    usdo_server_domain_write_ind_function=onUsdoDomainWrite
    set usdo_server_domain_read_ind_function=onUsdoDomainRead usdo_client_enabled=1
    usdo_client_read_ind_function=onUsdoClientRead
    usdo_client_write_ind_function=onUsdoClientWrite
    usdo_client_domain_write_ind_function=onUsdoClientDomainWrite
    usdo_client_domain_read_ind_function=onUsdoClientDomainRead
)";

constexpr const char *kCanFd = R"(
    set canfd_supported=1 usdo_server_enabled=1 usdo_server_cnt=3 usdo_client_enabled=1
    usdo_client_cnt=2
    1032:0 U8 ro 0 1
    1032:1 U32 ro 0 0
)";

constexpr const char *kUds = R"(
    set new_init_structure=1 udsserver_supported=1 udsclient_supported=1 udsserver_version=3
    set uds_client_cnt=2 uds_server_active=1 uds_physical_request_id=0x7E0,0x7E1
    set uds_physical_response_id=0x7E8, uds_functional_request_id=0x7DF uds_ext_addressing=1,2
    uds_physical_request_ext_addr=7
    uds 16 1,3,64,70
    uds 17 1 1,2
    uds 49 2,3 4
    uds 34 1
)";

/// Shared subindices: line 0 holds the values; line 1 has one that line 0 does not share.
constexpr const char *kShared = R"(
    line 0
    2300:0 U8 const 1 2 shared
    2300:1 U16 rw 0 41 shared map
    2300:2 U32 rw 2 0 shared map var=common
    2301:0 U8 rw 0 5
    line 1
    2300:0 U8 const 1 2 shared
    2300:1 U16 rw 0 42 shared map
    2300:2 U32 rw 2 0 shared map var=common
    2301:0 U8 rw 0 6 shared
    2302:0 U8 rw 0 7 shared
)";

/// A gateway: some values received on one line are sent on another.
constexpr const char *kRouting = R"(
    line 0
    sdo_routing=1
    1f2c:0 U8 const 1 1
    1f2c:1 U64 rw 0 1
    pdo 1409 0x301 255
    1609:0 U8 const 1 2
    1609:1..2 U32 const 1 0x23000110,0x23000220
    1a10:0 U8 const 1 1
    1a10:1 U32 const 1 0x23000110
    line 1
    1a04:0 U8 const 1 2
    1a04:1..2 U32 const 1 0x23000220,0x23000110
)";

/// Objects that the application answers for, and those between them.
constexpr const char *kVirtual = R"(
    2400:0 U8 ro 3 0
    2401:0 U16 ro 0 5
    2402:0 U8 ro 3 3
    2402:1 U16 rw 3 1
    2402:2 U32 rw 3 2
    2402:3 VS ro 3 -
    2403:0 U8 const 1 2
    2403:1 U16 rw 3 1
    2403:2 U16 rw 0 9
    2404:0 U8 ro 3 4
    2404:1..4 I16 rw 3 0,0,0,0
    2405:0 U16 ro 0 6
)";

/// Objects that are not as they should be.
constexpr const char *kOdd = R"(
    2500 var
    2501 arr
    2502:1..2 U8 rw 0 1,2
    pdo 1800 0x181
    1a00:0 U8 const 1 8
    1a00:1 U32 const 1 0x10010008
    pdo 1400 0x201
    13f1:0..1 U8 rw 0 2,3
    1017:0 U32 rw 0 100
    1005:0 U16 rw 0 0x80
)";

/// Shared runs of equal entries, and runs that are shared in part.
constexpr const char *kSharedRuns = R"(
    compact_array_description=1
    line 0
    2600:0 U8 const 1 3 shared
    2600:1..3 U16 rw 0 4,4,4 shared map
    2601:0 U8 const 1 3 shared
    2601:1..2 U16 rw 0 4,4 shared
    2601:3 U16 rw 0 4
    2602:0 U8 const 1 3
    2602:1..3 U16 rw 0 4,4,4 shared
    2603:0 U8 const 1 2 shared
    2603:1..2 U16 rw 0 4,5 shared
    line 1
    2600:0 U8 const 1 3 shared
    2600:1..3 U16 rw 0 4,4,4 shared map
    2601:0 U8 const 1 3 shared
    2601:1..2 U16 rw 0 4,4 shared
    2601:3 U16 rw 0 4
    2602:0 U8 const 1 3
    2602:1..3 U16 rw 0 4,4,4 shared
    2603:0 U8 const 1 3
    2603:1..3 U16 rw 0 4,5,6 shared
    1a00:1..2 U32 const 1 0x26000210,0x26020210
)";

/// Values at the edges of what texts may hold.
constexpr const char *kOddValues = R"(
    2700:0 U8 rw 0 010
    2701:0 I16 rw 0 0xFFFE
    2702:0 R32 rw 0 1e10
    2703:0 R32 rw 0 nan
    2704:0 R32 rw 0 inf
    2705:0 R32 rw 0 1e39
    2706:0 U32 rw 0 -
    2707:0 I8 rw 0 -1
    2708:0 U64 rw 0 0xFFFFFFFFFFFFFFFF
    2709:0 R32 rw 0 -1e-3
    270a:0 U32 rw 0 $NODEID+0x80
    270b:0 VS const 1 |x00ff size=2
    270c:0 VS const 1 ab\x41bc size=5
    270d:0 UTF8 const 1 - size=0
    270e:0 I32 rw 0 0xFFFFFFFE
)";

/// All settings of services, events and hardware.
constexpr const char *kSwitches = R"(
    set co_network_id=3 only_one_hb_buffer=1 sorted_coblist=1 user_tx_cob=2 user_rx_cob=3
    set receivebuffersize=20u transmitbuffersize= sleep_mode_selection=1 sleep_wait_time=5
    set lss_inquiry_supported=1 dynod=1 csdo_write_special=1 emcy_routing=1 sdo_routing=1
    config_manager=1
    1f20:0 U8 const 1 0
    6000:0 U8 const 1 2
    6000:1..2 U32 ro 0 0x80000001,0x3
    1000:0 U32 const 1 0x000001BF
    1010autostore_by_application=1
    set sdo_blocktransfer_block_size=20 sdo_blocktransfer_crc_supported=1 sdo_client_queue_size=4
    set sdo_client_queue_internal_access_supported=1 event_ssdo_domain_counter=8 sdo_split=1
    set usdo_server_domain_write_ind_size=7 usdo_server_ind_read_cnt=1 usdo_server_ind_write_cnt=1
    set usdo_client_ind_read_cnt=1 event_sdo_server_read=1 event_sdo_server_write=1
    set event_sdo_server_check_write=1 event_pdo=1 event_pdo_update=1 event_errctrl=1 event_sync=1
    set event_sync_finished=1 event_finished=1 event_cfg=1 event_flyma=1 event_sdorouter=1
    set event_can=1 event_sdo_client_read=1 event_sdo_client_write=1 event_emcy=1
    set event_emcy_consumer=1 event_time=1 event_srd=1 event_lss=1 event_idnego=1 event_manager=1
    set event_mpdo=1 event_gfc=1 event_ssdo_domain_write=1 event_ssdo_domain_read=1
    set isotp_server_event=1 isotp_client_event=1 fct_finished=onFinished fct_srd=onSrd
    set all_targets=1 targetsettings_cnt=3 targetsettings_active=1
    targetsettings_0_name=first /* board */
    set targetsettings_1_name=second targetsettings_1_timer=2000
    targetsettings_1_defines=#define SECOND_BOARD 1u
    set targetsettings_1_endianess=0x1 targetsettings_2_name=third endian=1 drv_filter=1
    drv_group_filter=1
    hw_defines=#define FIRST_BOARD 1u
    user_defines=#define OWN_DEFINE 1u
    generate_generation_counter=1
    static_memory_specifier=/* fast */
)";
