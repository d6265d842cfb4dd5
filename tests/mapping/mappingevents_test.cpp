#include "dialogs/zel_previewevents.h"
#include "mapping/zel_mappingevents.h"
#include "model/zel_mappingparams.h"
#include "viewer/zel_events.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>

using namespace zel;

TEST(MappingEvents, HaveTypesOfTheirOwnAndTheIdZero) {
    const zel_MappingEvent changed(true);
    const zel_MappingCommandEvent command{wxCommandEvent(wxEVT_MENU, 6040)};
    const zel_LevelsEvent levels;
    const zel_ThresholdingEvent thresholds;
    std::set<wxEventType> types;
    for (const wxEvent* event : std::initializer_list<const wxEvent*>{&changed, &command, &levels, &thresholds}) {
        EXPECT_EQ(event->GetId(), 0);
        types.insert(event->GetEventType());
    }
    EXPECT_EQ(types, (std::set<wxEventType>{zel_EVT_MAPPING_CHANGED, zel_EVT_MAPPING_COMMAND, zel_EVT_LEVELS_PREVIEW,
                                            zel_EVT_THRESHOLDING_PREVIEW}));
}

TEST(MappingEvents, CommandEventOwnsACloneOfItsCause) {
    auto cause = std::make_unique<wxCommandEvent>(wxEVT_MENU, 6040);
    cause->SetString("why");
    zel_MappingCommandEvent event(*cause);
    int module = 0;
    event.SetClientData(&module);
    EXPECT_NE(event.GetCommandEvent(), cause.get());
    cause.reset();
    EXPECT_EQ(event.GetCommandEvent()->GetId(), 6040);
    EXPECT_EQ(event.GetCommandEvent()->GetEventType(), wxEventType(wxEVT_MENU));
    EXPECT_EQ(event.GetCommandEvent()->GetString(), "why");

    std::unique_ptr<zel_MappingCommandEvent> clone(dynamic_cast<zel_MappingCommandEvent*>(event.Clone()));
    ASSERT_NE(clone, nullptr);
    EXPECT_NE(clone->GetCommandEvent(), event.GetCommandEvent());
    EXPECT_EQ(clone->GetCommandEvent()->GetString(), "why");
    EXPECT_EQ(clone->GetClientData(), &module);
    EXPECT_EQ(clone->GetEventType(), wxEventType(zel_EVT_MAPPING_COMMAND));
}

TEST(MappingEvents, ChangedTellsWhetherItStays) {
    const zel_MappingEvent preview(false);
    const std::unique_ptr<wxEvent> clone(preview.Clone());
    EXPECT_FALSE(dynamic_cast<zel_MappingEvent&>(*clone).IsCommitted());
    EXPECT_TRUE(zel_MappingEvent(true).IsCommitted());
}

TEST(MappingEvents, PreviewsCarryTheirNumbers) {
    const zel_LevelsEvent levels(1.5F, 2.5F, 0.7, 10.0F, 20.0F, 2);
    const std::unique_ptr<wxEvent> levelsClone(levels.Clone());
    const auto& l = dynamic_cast<zel_LevelsEvent&>(*levelsClone);
    EXPECT_EQ(l.GetInMin(), 1.5F);
    EXPECT_EQ(l.GetInMax(), 2.5F);
    EXPECT_EQ(l.GetGamma(), 0.7);
    EXPECT_EQ(l.GetOutMin(), 10.0F);
    EXPECT_EQ(l.GetOutMax(), 20.0F);
    EXPECT_EQ(l.GetChannel(), 2);
    const zel_ThresholdingEvent thresholds(-1.5F, 3.0F, zel_allChannels);
    const std::unique_ptr<wxEvent> thresholdsClone(thresholds.Clone());
    const auto& t = dynamic_cast<zel_ThresholdingEvent&>(*thresholdsClone);
    EXPECT_EQ(t.GetLower(), -1.5F);
    EXPECT_EQ(t.GetUpper(), 3.0F);
    EXPECT_EQ(t.GetChannel(), 3);
}

TEST(MappingEvents, NewParametersHoldTheLimitsOfTheType) {
    constexpr TLevelsParams<float, unsigned char> levels;
    EXPECT_EQ(levels.inMin, 1.17549435e-38F); // the smallest positive normal number
    EXPECT_EQ(levels.inMax, 3.40282347e+38F);
    EXPECT_EQ(levels.gamma, 1.0);
    EXPECT_EQ(levels.outMin, 0);
    EXPECT_EQ(levels.outMax, 255);
    constexpr ThresParams<int> thresholds;
    EXPECT_EQ(thresholds.lower, -2147483647 - 1);
    EXPECT_EQ(thresholds.upper, 2147483647);
}
