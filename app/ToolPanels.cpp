// SPDX-License-Identifier: GPL-3.0-or-later
// The list of tool panels the window shows; one line per tool.
#include "app/ToolHost.h"

#include "app/FavouritesPanel.h"
#include "app/RepertoirePanel.h"
#include "library/FavourManager.h"
#include "library/RepertoireStore.h"
#include "vision/GroupPrefix.h"

#include "app/BoardSheetPanel.h"
#include "app/CardMonitorPanel.h"
#include "app/GroupingPanel.h"
#include "app/PairingPanel.h"
#include "app/PosePanel.h"
#include "app/ReportPanel.h"
#include "app/RollPanel.h"
#include "app/VisionPanel.h"
#include "app/WatermarkPanel.h"
#include "browse/hotkeys/HistogramHotkey.h"

namespace lumaro::app {

void installToolPanels(ToolHost& host)
{
    (void)host;
    host.addToolPanel(QStringLiteral("已收藏"), new FavouritesPanel(host, library::FavourManager::shared()));
    static library::RepertoireStore repertoire(&vision::GroupPrefix::stripped);
    repertoire.open();
    host.addToolPanel(QStringLiteral("Repertoire 合集"),
                      new RepertoirePanel(host, repertoire, library::FavourManager::shared()));
    host.addToolPanel(QStringLiteral("文件名分组"), new GroupingPanel(host));
    host.addToolPanel(QStringLiteral("图像分析"), new VisionPanel(host));
    host.addToolPanel(QStringLiteral("水印标识分拣"), new WatermarkPanel(host));
    host.addToolPanel(QStringLiteral("索引表"), new BoardSheetPanel(host));
    host.addToolPanel(QStringLiteral("人物姿态"), new PosePanel(host));
    host.addToolPanel(QStringLiteral("JPG-RAW配对清理"), new PairingPanel(PairingPanel::Tool::clean, host));
    host.addToolPanel(QStringLiteral("RAW PICK"), new PairingPanel(PairingPanel::Tool::pick, host));
    host.addToolPanel(QStringLiteral("存储卡导入"), new CardMonitorPanel(host));
    host.addToolPanel(QStringLiteral("拍摄报告"), new ReportPanel(host, browse::HistogramHotkey::shared()));
    host.addToolPanel(QStringLiteral("云端相册"), new RollPanel(host));
}

} // namespace lumaro::app
