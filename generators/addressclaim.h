// The group by which a J1939 device claims its address (SAE J1939-81, 4.1.1).
#pragma once

class ObjectDataBase;

namespace Pgn
{

/// Gives each line that speaks J1939, or that sends at least two groups, the group "Address
/// Claiming" with the NAME of the device as the settings tell it. What the line had under that
/// number is replaced. Writes to the project, so that it runs before the job.
void declareIdentify(ObjectDataBase &store);

} // namespace Pgn
