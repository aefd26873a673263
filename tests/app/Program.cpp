#include "Program.h"

#include <portable/tbMesh.h>
#include <tamber/graph/tbModel.h>
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbRef.h>
#include <tests/support/Vertices.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include <gtest/gtest.h>

namespace tbtest
{
namespace
{
/// The exit code in what std::system() gives: the value itself, or its second byte.
int exitCode(int status)
{
    return status > 255 ? status >> 8 : status;
}
} // namespace

Result run(const std::string& arguments, const std::string& out)
{
    const std::string program = std::filesystem::path(TAMBER_PROGRAM).make_preferred().string();
    const std::string target = out.empty() ? "out.txt" : out;
    const int status =
        std::system(("\"" + program + "\" " + arguments + " >" + target + " 2>err.txt").c_str());
    return {exitCode(status), out.empty() ? readAll("out.txt") : std::string(), readAll("err.txt")};
}

Result expectRun(const std::string& arguments, int code, const std::vector<std::string>& printed)
{
    const Result result = run(arguments);
    const std::string all = result.out + result.err;
    EXPECT_EQ(result.code, code) << arguments << '\n' << all;
    for (const std::string& part : printed)
        EXPECT_TRUE(holds(all, part)) << arguments << "\nprints no " << part << "\nbut " << all;
    return result;
}

bool holds(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/// Writes a row of four triangles natively.
void writeRow(const char* path)
{
    const unsigned int indices[] = {0, 1, 2};
    const tbRef<tbMesh> mesh = new tbMesh;
    mesh->set(tbMesh::TRIANGLES, makeVertices({{0, 0, 0}, {1, 0, 0}, {0, 0, 1}}), indices, 3);
    mesh->setNodeFlags(tbGroup::NODE_SHARE);
    const tbRef<tbModel> model = new tbModel;
    for (int i = 0; i < 4; ++i)
    {
        auto* place = new tbTransform;
        place->setXYZ(3.0f * float(i), 0.0f, 0.0f);
        place->addChild(mesh.get());
        model->addChild(place);
    }
    ASSERT_TRUE(tbLoader::exportFile(model.get(), path));
}

std::vector<std::string> programCommands()
{
    std::istringstream help(run("--help").out);
    std::vector<std::string> commands;
    std::string line;
    while (std::getline(help, line) && !line.starts_with("Subcommands:"))
        continue;
    while (std::getline(help, line) && line.starts_with("  "))
        if (std::istringstream words(line); line[2] != ' ' && words >> line)
            commands.push_back(line);
    return commands;
}
} // namespace tbtest
