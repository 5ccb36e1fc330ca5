// Variables: how the fields of a column become samples, and who shares and owns them.
#include "GraphData.h"
#include "GraphDataVariants.h"
#include "XmlReader.h"
#include "XmlVariable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <vector>

using namespace Tracelyn;

TEST(Variable, ConvertsFieldsToOneOfEightTypes) {
    struct Case {
        const char* type;
        const char* field;
        double value;
    };
    for (const auto& [type, field, value] :
         {Case{"Float", "12.5", 12.5}, Case{"Float", " -1.5e3x", -1500}, Case{"Float", "0.1\r", double{0.1F}},
          Case{"Float", "0x10", 16}, Case{"Float", "1e39", HUGE_VAL}, Case{"Float", "-inf", -HUGE_VAL},
          Case{"Short", "40000", -25536}, Case{"Long", "12.5", 12}, Case{"Long", "0x10", 0},
          Case{"Long", "-4000000000", -2147483648.0}, Case{"UShort", "-1", 65535},
          Case{"ULong", "-1", 4294967295.0}, Case{"ULong", "4000000000", 2147483647}, Case{"Byte", "-1", 255},
          Case{"Byte", "300", 44}, Case{"UByte", "300", 44}, Case{"Binary", "2", 2},
          Case{"Binary", "256", 0}}) {
        CGraphData data;
        TypedDataBase& variable = *CreateVariable(type, data);
        const CGraphDataSet& set = variable.CreateSet();
        const std::vector<double> values{7, 0, 0, value};
        for (const char* text : {"7\r", "abc", "", field})
            variable.AddValue(text);
        ASSERT_EQ(set.GetCount(), 4);
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(set.GetValue(i, -1), values[static_cast<size_t>(i)]) << type << ' ' << field;
        EXPECT_EQ(set.IsBinary(), type == std::string_view("Binary"));
    }
    CGraphData data;
    for (const char* name : {"", "float", "Float ", "Double", "byte"})
        EXPECT_EQ(CreateVariable(name, data), nullptr) << name;
}

TEST(Variable, StoresItsColumnOnceForAllItsSets) {
    CGraphData data;
    TypedDataBase& variable = *CreateVariable("Short", data);
    variable.SetName("Y1Position");
    variable.SetDescription("Y1");
    variable.AddValue("1");
    EXPECT_FALSE(variable.HasStore());

    const CGraphDataSet& first = variable.CreateSet();
    variable.AddValue("2");
    const CGraphDataSet& second = variable.CreateSet();
    variable.AddValue("3");
    ASSERT_EQ(data.GetSets().size(), 2U);
    for (const CGraphDataSet* set : {&first, &second}) {
        EXPECT_EQ(set->GetName(), "Y1");
        ASSERT_EQ(set->GetCount(), 2);
        EXPECT_EQ(set->GetValue(0, -1), 2.0);
        EXPECT_EQ(set->GetValue(1, -1), 3.0);
    }
}

TEST(Variable, LivesUntilTheNextReaderIsConstructed) {
    class Watched : public TypedData<float> {
    public:
        Watched(CGraphData& owner, bool& alive) : TypedData(owner), m_Alive(alive) { m_Alive = true; }
        ~Watched() override { m_Alive = false; }

    private:
        bool& m_Alive;
    };
    CGraphData data;
    bool alive = false;
    {
        const CXmlReader reader;
        TypedDataRegistry::Instance().Add(std::make_unique<Watched>(data, alive));
    }
    EXPECT_TRUE(alive);
    const CXmlReader next;
    EXPECT_FALSE(alive);
}
