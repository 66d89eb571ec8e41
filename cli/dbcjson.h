#pragma once

class DbcFileParser;
class JsonWriter;

// Writes the members of an inspection's object that tell of a DBC file: "ok", "error", "summary" and
// "signals", the records under their field names.
void writeDbcJson(JsonWriter &json, const DbcFileParser &parser);
