// The words of device descriptions (CiA 306), for those that read them and those that write them.
// Readers compare them without regard to case.
#pragma once

namespace EdsKeys
{

// --- Sections ---

constexpr const char *kFileInfo = "FileInfo";
constexpr const char *kDeviceInfo = "DeviceInfo";
constexpr const char *kDummyUsage = "DummyUsage";
constexpr const char *kComments = "Comments";
constexpr const char *kDeviceComissioning = "DeviceComissioning";   ///< DCF, with one "m"
constexpr const char *kDeviceCommissioning = "DeviceCommissioning"; ///< as some tools spell it

// --- Entries of objects and subindices ---

constexpr const char *kParameterName = "ParameterName";
constexpr const char *kObjectType = "ObjectType";
constexpr const char *kSubNumber = "SubNumber";
constexpr const char *kDataType = "DataType";
constexpr const char *kAccessType = "AccessType";
constexpr const char *kDefaultValue = "DefaultValue";
constexpr const char *kLowLimit = "LowLimit";
constexpr const char *kHighLimit = "HighLimit";
constexpr const char *kPdoMapping = "PDOMapping";
constexpr const char *kObjFlags = "ObjFlags";
constexpr const char *kCompactSubObj = "CompactSubObj";
constexpr const char *kParameterValue = "ParameterValue"; ///< DCF
constexpr const char *kDenotation = "Denotation";         ///< DCF
constexpr const char *kNrOfEntries = "NrOfEntries";       ///< of the lists of a compact object

// --- Entries about the file ---

constexpr const char *kFileName = "FileName";
constexpr const char *kFileVersion = "FileVersion";
constexpr const char *kFileRevision = "FileRevision";
constexpr const char *kEdsVersion = "EDSVersion";
constexpr const char *kDescription = "Description";
constexpr const char *kCreationTime = "CreationTime";
constexpr const char *kCreationDate = "CreationDate";
constexpr const char *kCreatedBy = "CreatedBy";
constexpr const char *kModificationTime = "ModificationTime";
constexpr const char *kModificationDate = "ModificationDate";
constexpr const char *kModifiedBy = "ModifiedBy";
constexpr const char *kLastEds = "LastEDS"; ///< DCF: the data sheet that it was made of
constexpr const char *kLines = "Lines";
constexpr const char *kLine = "Line"; ///< followed by a number from 1 on

// --- Entries about the device ---

constexpr const char *kVendorName = "VendorName";
constexpr const char *kVendorNumber = "VendorNumber";
constexpr const char *kProductName = "ProductName";
constexpr const char *kProductNumber = "ProductNumber";
constexpr const char *kRevisionNumber = "RevisionNumber";
constexpr const char *kOrderCode = "OrderCode";
constexpr const char *kBaudRates[] = { // kBit/s
    "BaudRate_10",  "BaudRate_20",  "BaudRate_50",  "BaudRate_125",
    "BaudRate_250", "BaudRate_500", "BaudRate_800", "BaudRate_1000"};
constexpr const char *kSimpleBootupSlave = "SimpleBootupSlave";
constexpr const char *kSimpleBootupMaster = "SimpleBootupMaster";
constexpr const char *kLssSupported = "LSS_Supported";
constexpr const char *kSelfStarting = "SelfStarting"; ///< of projects; only XDD files tell it
constexpr const char *kGranularity = "Granularity";
constexpr const char *kDynamicChannelsSupported = "DynamicChannelsSupported";
constexpr const char *kGroupMessaging = "GroupMessaging";
constexpr const char *kNrOfRxPdo = "NrOfRXPDO";
constexpr const char *kNrOfTxPdo = "NrOfTXPDO";
constexpr const char *kDummies[] = {"Dummy0001", "Dummy0002", "Dummy0003", "Dummy0004",
                                    "Dummy0005", "Dummy0006", "Dummy0007"};
constexpr const char *kSupportedObjects = "SupportedObjects";

// --- Entries about the place of a device in its network, DCF ---

constexpr const char *kNodeId = "NodeID";
constexpr const char *kNodeName = "NodeName";
constexpr const char *kBaudrate = "Baudrate";
constexpr const char *kNetNumber = "NetNumber";
constexpr const char *kNetworkName = "NetworkName";

} // namespace EdsKeys
