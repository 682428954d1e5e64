// gen_define.h, the header that switches the modules of the stack and sizes its tables.
#pragma once

#include "generators/defines/definecontext.h"
#include "generators/filegenerator.h"

/// Writes the header; its subclasses choose the generation of the stack. What the user wrote
/// between the two markers of the old header, and how often it was generated, go over into the new
/// one. The new file takes the old one's place in one step: should the disk fill up, the user's
/// lines are still there.
class DefineGenerator : public FileGenerator
{
    Q_OBJECT

public:
    /// False as well if the user's section cannot be told from the rest of the old header.
    bool checkWritability() override;

    /// What the old header held between the markers; read it when the job is over.
    QString getUserSection() const;

    // Set before the start.
    bool j1939Present = false;       ///< some line carries J1939
    bool multiProtocol = false;      ///< J1939 and CANopen, or a raw CAN line
    bool counterFromSetting = false; ///< count of generations: "olm_generation_count"

    /// Shows the user's section, so that nobody forgets that it is there.
    QString closingRemark() const override;

protected:
    explicit DefineGenerator(const DefineDialect &stackDialect);

private:
    QString targetFile() const override { return inOutputDirectory("gen_define.h"); }
    void writeFiles() override;
    void writeSections(TextWriter &out);
    void writeApplicationDefines(DefineContext &context) const;

    const DefineDialect dialect;
    QByteArray userSection;
    quint32 generationCounter = 0;
};
