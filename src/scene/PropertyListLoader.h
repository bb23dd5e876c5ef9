// Property lists in a scene: preferences, conditions of the product, files, assertions. Private to
// this folder.
#pragma once

#include "foundation/PropertyList.h"
#include "scene/JsonNode.h"
#include "scene/SceneState.h"
#include "scene/SceneStep.h"

namespace kestro {

Date loadDate(const JsonNode& node);
Data loadBase64(const JsonNode& node);

// {"date": …} and {"data": …} are boxes, every other object is a dictionary. A member that is null
// is left out.
PropertyList loadPropertyList(const JsonNode& node);
PropertyListDictionary loadDictionary(const JsonNode& node);
PropertyListChanges loadChanges(const JsonNode& node);

// The conditions that are documented have checked types; others are taken as they are.
PropertyListChanges loadProductChanges(const JsonNode& node);

// By path.
std::map<std::string, SceneFile, std::less<>> loadFiles(const JsonNode& node);
// By process identifier, as text.
SceneAssertions loadAssertions(const JsonNode& node);

}  // namespace kestro
