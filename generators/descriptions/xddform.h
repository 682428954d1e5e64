// What the forms of XML device descriptions differ in: that of CAN FD, as it always was and with
// its slips mended, and that of classical CAN (CiA 311).
#pragma once

#include "generators/descriptions/descriptionform.h"
#include "generators/generationdate.h"

/// The words in which the two profiles of a file differ.
struct XddProfile {
    FormWord identification;
    const char *classId;
    FormWord bodyType;
};

struct XddForm : DescriptionForm {
    XddProfile device = {{"CAN device profile"}, "Device", {"ProfileBody_Device_CANopenFD"}};
    // Deliberate: a letter is missing in the classic form, held by tst_golden.
    XddProfile communication = {{"CAN com net profile", "CAN comm net profile"},
                                "CommunicationNetwork",
                                {"ProfileBody_CommunicatioNetwork_CANopenFD",
                                 "ProfileBody_CommunicationNetwork_CANopenFD"}};
    const char *technology = "CANopenFD";
    const char *prefix = "";      ///< of elements that the schema declares globally
    const char *schema = nullptr; ///< the namespace of these; else the file has none
    QString (*day)(const QDateTime &moment) = GenerationDate::day;
    bool cutsTexts = false;    ///< at their ends, as readers do with what stands in elements
    bool hasFormat = false;    ///< the body names its format and the time of the day
    bool namesProduct = false; ///< also by its number and order code
};

constexpr XddForm classicFdXdd()
{
    return {};
}

constexpr XddForm portableFdXdd()
{
    XddForm form;
    form.preferPortable = true;
    form.day = GenerationDate::isoDay;
    form.cutsTexts = true;
    return form;
}

constexpr XddForm classicalCanXdd()
{
    XddForm form = portableFdXdd();
    form.device.bodyType = {"co:ProfileBody_Device_CANopen"};
    form.communication.bodyType = {"co:ProfileBody_CommunicationNetwork_CANopen"};
    form.technology = "CANopen";
    form.prefix = "co:";
    form.schema = "http://www.canopen.org/xml/1.1";
    form.hasFormat = true;
    form.namesProduct = true;
    return form;
}
