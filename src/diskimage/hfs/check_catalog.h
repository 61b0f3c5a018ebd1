#pragma once

#include "diskimage/hfs/check_blocks.h"
#include "diskimage/hfs/check_report.h"
#include "diskimage/hfs/record_list.h"
#include "diskimage/hfs/volume_header.h"

namespace velmora::diskimage::hfs
{

/// Checks the records of the catalog and of the attributes tree (none when the volume has no such tree) against one
/// another and against the volume header, and takes the blocks of all forks.
void checkCatalog(const RecordList& catalog, const RecordList& attributes, const VolumeHeader& header,
                  BlockChecker& blocks, CheckReport& report);

} // namespace velmora::diskimage::hfs
