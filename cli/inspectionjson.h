#pragma once

class JsonWriter;
struct FileInspection;

// Writes an inspection as an object. Times are microseconds on the logger's clock, extended to 64 bits;
// "configuration" holds all records under their field names. What is not known is null.
void writeInspectionJson(JsonWriter &json, const FileInspection &inspection);
