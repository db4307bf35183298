// orbdt's built-in demo session.
#include "orbdt/demo.h"

#include <iomanip>
#include <string>

#include "orbdt/request_line.h"
#include "orbdt/requests.h"
#include "orbdt/session.h"

namespace orbdt {
namespace {

struct DemoStep {
  const char* property;  // object.Property, as a user would write it
  const char* type;      // the property's data type
  const char* literal;   // the value assigned
  bool accepted;         // whether the type should store it
};

// One row per assignment. Rows whose type is not registered are left out, so the session grows as
// types arrive.
constexpr DemoStep kSteps[] = {
    {"line.Color", "RGBAColor", "'red'", true},
    {"line.Color", "RGBAColor", "'r'", true},
    {"line.Color", "RGBAColor", "'0 0.5 1'", true},
    {"line.Color", "RGBAColor", "[0 0.5 1]", true},
    {"line.Color", "RGBAColor", "uint8([255 128 0])", true},
    {"line.Color", "RGBAColor", "[1 2 3]", false},
    {"line.Color", "RGBAColor", "'purple'", false},
    {"root.ColorTable", "ColorTable", "struct('purple', [0.5 0 0.5])", true},
    {"line.Color", "RGBAColor", "'purp'", true},
    {"line.MarkerFaceColor", "MarkerColor", "'none'", true},
    {"line.MarkerFaceColor", "MarkerColor", "'auto'", true},
    {"line.MarkerFaceColor", "MarkerColor", "[1 0 0 0.5]", false},
    {"surface.EdgeColor", "RGBFlatNoneColor", "'flat'", true},
    {"patch.FaceColor", "PatchColor", "'interp'", true},
    {"axes.LineStyleOrder", "LineStyleArray", "{'-', '--', ':'}", true},
    {"axes.LineStyleOrder", "LineStyleArray", "{'-'; 'dotted'}", false},
    {"line.LineStyle", "LineStyle", "'--'", true},
    {"line.LineStyle", "LineStyle", "'dotted'", false},
    {"line.LineWidth", "Positive", "2", true},
    {"line.LineWidth", "Positive", "0", false},
    {"line.Marker", "MarkerStyle", "'hexa'", true},
    {"line.MarkerSize", "Positive", "-6", false},
    {"axes.XLim", "Limits", "[0 10]", true},
    {"axes.XLim", "Limits", "[10 0]", false},
    {"axes.XScale", "AxisScale", "'log'", true},
    {"axes.ActivePositionProperty", "ActivePosition", "'outer'", true},
    {"axes.Units", "Units", "'p'", false},
    {"axes.ColorMap", "ColorMap", "[0 0 0; 1 1 1]", true},
    {"axes.ColorMap", "ColorMap", "[0 0 2]", false},
    {"axes.XTick", "Tick", "[0 5 10]", true},
    {"axes.XTick", "Tick", "[0 0 1]", false},
    {"axes.Title", "TextString", "{'Results'; 'run 3'}", true},
    {"surface.FaceAlpha", "MeshAlpha", "0.5", true},
    {"surface.FaceAlpha", "MeshAlpha", "'interp'", true},
    {"surface.FaceAlpha", "MeshAlpha", "1.5", false},
    {"surface.FaceAlpha", "MeshAlpha", "'opaque'", false},
    {"axes.Position", "Position", "[0.13 0.11 0.775 0.815]", true},
    {"axes.Position", "Position", "[0.1 0.1 -0.8 0.8]", false},
    {"axes.Position", "Position", "[0.1 0.1 0.8]", false},
    {"figure.Position", "ScreenPosition", "[100 100 560 420]", true},
    {"figure.Position", "ScreenPosition", "[100 100 560 -420]", false},
};

// Long read-backs (a whole color table) are cut to a line's worth.
std::string shortened(const std::string& text) {
  constexpr std::size_t kWidth = 100;
  return text.size() <= kWidth ? text : text.substr(0, kWidth - 3) + "...";
}

// Objects: a parent and its child, a refused handle, and a callback that runs.
struct SessionStep {
  const char* line;
  bool accepted;
};
constexpr SessionStep kSessionSteps[] = {
    {"f = figure", true}, {"a = axes(Parent=f)", true}, {"l = line(Parent=a, LineWidth=2)", true},
    {"l.Parent", true},   {"l.Parent = 42", false},     {"l.ButtonDownFcn = {@disp, 'line clicked'}", true},
    {"click(l)", true},   {"delete(f)", true},          {"l.Parent", false},
};

int runObjectDemo(const HostSession& host, std::ostream& out) {
  out << "\nobjects, handles and callbacks:\n";
  Session session(host, out, kDefaultMaxRequestBytes);
  int unexpected = 0;
  for (const SessionStep& step : kSessionSteps) {
    out << ">> " << step.line << "\n";
    if (session.runLine(step.line) != step.accepted) ++unexpected;
  }
  return unexpected;
}

}  // namespace

int runDemo(const HostSession& host, std::ostream& out) {
  int unexpected = 0;
  for (const DemoStep& step : kSteps) {
    const nlohmann::json request = {{"op", "set"}, {"type", step.type}, {"value", step.literal}};
    cmdlang::ByteBudget budget(kDefaultMaxRequestBytes);
    const Response response = runRequest(host, request, budget, Form::Text);
    if (response.exitStatus == 2) continue;  // the type is not registered in this build
    const std::string assignment = std::string(step.property) + " = " + step.literal;
    out << std::left << std::setw(39) << assignment << ' ';
    if (response.exitStatus == 0) {
      const nlohmann::json& text = response.json["text"];
      out << "stored  " << shortened(text.is_string() ? text.get<std::string>() : response.valueLiteral) << "\n";
    } else {
      const nlohmann::json& error = response.json["error"];
      out << "refused " << error["id"].get<std::string>() << "\n"
          << std::string(48, ' ') << error["message"].get<std::string>() << "\n";
      if (response.json.contains("hint")) {
        out << std::string(48, ' ') << "hint: " << response.json["hint"].get<std::string>() << "\n";
      }
    }
    if ((response.exitStatus == 0) != step.accepted) ++unexpected;
  }
  unexpected += runObjectDemo(host, out);
  return unexpected == 0 ? 0 : 1;
}

}  // namespace orbdt
