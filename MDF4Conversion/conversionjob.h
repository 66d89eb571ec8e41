#pragma once

#include <QString>

#include <memory>

class OutputNames;

// What a conversion is asked to do.
struct ConversionJob
{
    QString inputFile;
    // Either these two, and a file that has the name of the output is replaced:
    QString outputFile;
    QString temporaryDir; // made by the conversion and removed with it
    // or free names in a folder, and no file is ever replaced. The two above are tried first then;
    // where they are empty, or somebody got them meanwhile, the next ones are asked for.
    QString outputFolder;
    std::shared_ptr<OutputNames> names;
    QString author;
    QString department;
    int threads = 1; // that compress; the file is the same whatever their number
};

// The user that the environment names: USERNAME where it is set, else USER.
[[nodiscard]] QString environmentUser();
