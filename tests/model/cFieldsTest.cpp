#include <gtest/gtest.h>

#include <type_traits>

#include "model/FieldProperties.h"
#include "model/cField.h"

namespace kd {
namespace {

TEST(cFieldsTest, AddTakesWhatItIsGiven) {
    cFields fields;
    const auto field = fields.Add(3, " Width ", "N", 6, 2);
    EXPECT_EQ(field, fields.Item(1));
    EXPECT_EQ(field->FileID(), 3);
    EXPECT_EQ(field->Name(), " Width ");
    EXPECT_EQ(field->FieldType(), "N");
    EXPECT_EQ(field->Length(), 6);
    EXPECT_EQ(field->Decimals(), 2);
}

TEST(cFieldsTest, AllElseOfANewRecordIsDefault) {
    cFields fields;
    const auto field = fields.Add(0, "", "", 0, 0);
    for (const FieldProperty& property : FieldProperties()) {
        if (property.name != "Name" && property.name != "Length" && property.name != "FieldType") {
            EXPECT_EQ(property.get(*field), property.newRecord) << property.name;
        }
    }
    for (int i = 0; i < LimitCount; ++i) {
        EXPECT_EQ(field->LimitFlag(i), "C");
    }
}

TEST(cFieldsTest, EmptyNameBecomesVAndThePosition) {
    cFields fields;
    EXPECT_EQ(fields.Add(1, "", "N", 6, 2)->Name(), "V1");
    EXPECT_EQ(fields.Add(1, "x", "N", 6, 2)->Name(), "x");
    EXPECT_EQ(fields.Add(1, "", "N", 6, 2)->Name(), "V3");
    EXPECT_EQ(fields.Add(1, " ", "N", 6, 2)->Name(), " ") << "a blank is a name";
    fields.Remove(1);
    EXPECT_EQ(fields.Add(1, "", "N", 6, 2)->Name(), "V4");
}

TEST(cFieldsTest, TypeIsTakenInUpperCaseWhenItIsOne) {
    struct Case {
        const char* given;
        const char* stored;
    };
    const Case cases[] = {{"N", "N"},
                          {"n", "N"},
                          {"A", "A"},
                          {"r", "R"},
                          {"c", "C"},
                          {"t", "T"},
                          {"P", "P"},
                          {"l", "L"},
                          {"x", "T"},
                          {"", ""},
                          {"ar", "AR"},
                          {"PL", "PL"},
                          {"NX", "T"},
                          {" N", "T"},
                          {"LN", "LN"},
                          {"RAN", "T"},
                          {"#", "T"},
                          {"1", "T"},
                          {"tplnarc", "TPLNARC"}};
    for (const Case& c : cases) {
        cFields fields;
        EXPECT_EQ(fields.Add(1, "x", c.given, 6, 2)->FieldType(), c.stored) << "'" << c.given << "'";
    }
}

TEST(cFieldsTest, LengthBelowOneBecomesEightAndDecimalsAreNeverCorrected) {
    cFields fields;
    EXPECT_EQ(fields.Add(1, "x", "N", 0, 0)->Length(), 8);
    EXPECT_EQ(fields.Add(1, "x", "N", -1, 0)->Length(), 8);
    EXPECT_EQ(fields.Add(1, "x", "N", -32768, 0)->Length(), 8);
    EXPECT_EQ(fields.Add(1, "x", "N", 1, 0)->Length(), 1);
    EXPECT_EQ(fields.Add(1, "x", "N", 32767, 0)->Length(), 32767);
    EXPECT_EQ(fields.Add(1, "x", "N", 3, 9)->Decimals(), 9);
    EXPECT_EQ(fields.Add(1, "x", "N", 3, -4)->Decimals(), -4);
}

TEST(cFieldsTest, TwoVariablesOfOneNameLiveSideBySide) {
    cFields fields;
    const auto first = fields.Add(1, "x", "N", 6, 2);
    const auto second = fields.Add(1, "x", "N", 6, 2);
    EXPECT_EQ(fields.Count(), 2);
    EXPECT_NE(first, second);
    EXPECT_THROW((void)fields.Item("x"), cError) << "a name is no key";
}

TEST(cFieldsTest, VariableBeyondTheLimitCannotBeReached) {
    cFields fields;
    for (int i = 0; i < 32768; ++i) {
        (void)fields.Add(1, "x", "N", 6, 2);  // the count alone matters
    }
    EXPECT_EQ(fields.Item(32767)->Name(), "x");
    try {
        (void)fields.Item(32768);
        ADD_FAILURE();
    } catch (const cError& error) {
        EXPECT_EQ(error.Number(), errOverflow);
    }
}

TEST(cFieldsTest, AddCopyMakesATwinOfItsOwn) {
    cFields fields;
    const auto field = fields.Add(1, "x", "N", 6, 2);
    cFields saved;
    const auto twin = saved.AddCopy(*field);
    EXPECT_NE(twin, field);
    EXPECT_EQ(twin, saved.Item(1));
    EXPECT_EQ(AllOf(*twin), AllOf(*field));
    field->SetUSL(5);
    field->SetRules("AB");
    EXPECT_EQ(twin->USL(), 0);
    EXPECT_EQ(twin->Rules(), "");
}

static_assert(!std::is_copy_constructible_v<cField> && !std::is_copy_assignable_v<cField>,
              "a variable has identity; its values are copied by CopyFrom");

}  // namespace
}  // namespace kd
