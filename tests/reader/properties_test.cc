// Attribute statements: the message for each, and what is stored of it.
#include <algorithm>

#include <gtest/gtest.h>

#include "reader/reading.h"

namespace cubenet {
namespace {

std::string as_properties(std::string_view statements) {
  std::string lines;
  for (std::size_t at = 0; at < statements.size(); at = statements.find('\n', at) + 1)
    lines.append("#$ PROPERTY ").append(statements.substr(at, statements.find('\n', at) + 1 - at));
  return design_with(lines);
}

TEST(Properties, AreStoredOrToldWhatIsWrong) { check_case_file("properties.txt", as_properties); }

TEST(Properties, EveryKeywordOfASignalGivesItsCode) {
  constexpr std::string_view codes = R"(
OPENDRAIN a>1 a;SLOWSLEW a>2 a;SLEWRATE a>2 a;PULLUP a>3 a;PULL_UP a>3 a;PULL a>4 a;OUTDELAY a>5 a;VOLTAGE a>20 a;
OPENDRAIN=ON a>21 a;OPENDRAIN =on a>21 a;OPENDRAIN=OFF a>22 a;OPENDRAIN = OFF a>22 a;SLOWSLEW=ON a>23 a;
SLEWRATE=ON a>23 a;SLOWSLEW =ON,a>23 a;SLOWSLEW=OFF a>24 a;SLEWRATE=OFF a>24 a;SLOWSLEW =OFF a>24 a;PULLUP=ON a>25 a;
PULLUP =ON a>25 a;PULL_UP =ON a>25 a;PULLUP=OFF a>26 a;PULL_UP =OFF a>26 a;PULL=UP a>27 a;PULL =up a>27 a;
PULL=OFF a>28 a;PULL =OFF a>28 a;PULL=HOLD a>29 a;PULL =HOLD a>29 a;OUTDELAY=ON a>30 a;OUTDELAY =ON a>30 a;
OUTDELAY=OFF a>31 a;OUTDELAY =OFF a>31 a;VOLTAGE=VVCIO a>32 a;VOLTAGE a vvcio>32 a;VOLTAGE=VCC a>33 a;
VOLTAGE a VCC>33 a;crit a>34 a;OSMBYPASS a>34 a;LXOR2 a.d.x1>35 a.D.X1;PRESERVE a>36 a;PROTECT a>37 a;
REGTYPE a ioc>38 a=ioc;CLK a fastclk>39 a=fastclk;CLK a.c IOCLK1>39 a.C=IOCLK1;SCP a p1 p+2,p3>40 a=p1 p+2 p3;
SAP a p>41 a=p;SLP a p>42 a=p;STP a p>43 a=p;SNP a p>44 a=p;ECP a p>45 a=p;PTSABYPASS a p>45 a=p;EAP a p>46 a=p;
ELP a p>47 a=p;ETP a p>48 a=p;ENP a p>49 a=p;GROUP a g1>50 a=g1;LOCK a 12>51 a=12;LOC a A1>51 a=A1;ZDOT a>52 a;
RESERVE_PIN a>53 a;BI_Z a>53 a;)";
  std::string script, stored;
  for (std::size_t at = 0, end = 0; (end = codes.find(';', at)) != codes.npos; at = end + 1) {
    const std::string item(codes.substr(at, end - at));
    const std::size_t arrow = item.find('>'), start = item.front() == '\n' ? 1 : 0;
    script += "corvane " + item.substr(start, arrow - start) + "\n";
    stored += (stored.empty() ? "" : "; ") + item.substr(arrow + 1);
  }
  check_cases(script + "= " + stored, as_properties);
}

TEST(Properties, WordsEndAt256CharactersAndStatementsAreQuotedUpTo255) {
  for (const std::string start : {"LOCK ", "LOCK a ", "GROUP a ", "SCP a p ", "VOLTAGE "}) {
    const std::string good = std::string(255, 'x') + (start == "LOCK " ? " 1" : "");
    const Reading reading(
        as_properties("corvane " + start + std::string(256, 'x') + "\ncorvane " + start + good + "\n"));
    EXPECT_EQ(message_numbers(reading.messages), "31536 ") << start;
    EXPECT_EQ(reading.design->properties.size(), start == "VOLTAGE " ? 1U : 2U); // a bad voltage has none
  }
  EXPECT_EQ(message_numbers(Reading(as_properties("corvane " + std::string(256, 'K') + "\n")).messages), "31539 ");
  const std::string messages = Reading(as_properties("x " + std::string(400, '~') + "\n")).messages;
  EXPECT_EQ(std::count(messages.begin(), messages.end(), '~'), 253);
}

} // namespace
} // namespace cubenet
