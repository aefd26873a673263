#include "Commands.h"

#include "CommandError.h"
#include "ModelFile.h"

#include <apps/tamber/native/Finding.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/graph/tbModel.h>
#include <tamber/graph/tbScene.h>
#include <tamber/trav/tbTravPath.h>

#include <cmath>
#include <iostream>

namespace
{
constexpr unsigned ANY_MASK = 0xFFFFFFFF;

tbVec3 pointOf(const std::vector<float>& numbers)
{
    return tbVec3(numbers[0], numbers[1], numbers[2]);
}

// A node's name, or its class where it has none, as it may stand on a terminal.
std::string labelOf(const tbGroup* node)
{
    return native::printable(node->getName() && *node->getName() ? node->getName()
                                                                 : node->getType()->getName());
}

std::string pathOf(const tbHit& hit)
{
    std::string text;
    // The root is the scene that the program puts the model under.
    for (int i = 1; hit.path && i < hit.path->getNum(); ++i)
        text += labelOf(hit.path->get(i)) + '/';
    return text + labelOf(hit.node);
}

// tamber pick: a ray from one point to another, and what of the model it strikes first.
class PickCommand : public Command
{
public:
    void define(CommandTable& table) override
    {
        CommandRow& command =
            table.add("pick", "Print what of a model a ray from one point to another strikes first");
        command.add("MODEL", &model, "A model of any format that a loader reads, or a native file (.tb)")
            .require();
        command.add("--from", &from, "Where the ray starts").require().expect(3).nameValue("X,Y,Z");
        command.add("--to", &to, "Where it ends").require().expect(3).nameValue("X,Y,Z");
        command.notes =
            "Coordinates are the model's, Z up. Prints the path of nodes, the point, the distance from the\n"
            "start and the number of the primitive; 'nothing' when the ray strikes nothing.";
    }

    int run() override
    {
        const tbVec3 start = pointOf(from);
        const tbVec3 end = pointOf(to);
        const tbRay ray(start, end);
        if (!(ray.getLength() > 0.0f) || !std::isfinite(ray.getLength()))
            throw CommandError("--from, --to", "must be two points of finite coordinates that differ");
        const tbRef<tbGroup> root = loadModel(model);
        const tbRef<tbScene> scene(new tbScene);
        scene->addChild(root.get());
        // A model answers no collider until it is given a mask.
        for (int i = 0; i < tbModel::getNum(true); ++i)
            tbModel::get(i, true)->setColliderMask(ANY_MASK);
        scene->update();

        const tbRef<tbCollider> collider(new tbCollider);
        collider->setVolumeMode(tbCollider::VOLUME_NONE);
        collider->setSaveMask(tbCollider::SAVE_PATH);
        collider->addRay(ray);
        scene->acquireForQuery();
        const int hits = collider->intersect(scene.get());
        scene->releaseFromQuery();
        if (hits == 0)
        {
            std::cout << "nothing\n";
            return 0;
        }
        const tbHit& hit = *collider->getRayHit(0);
        std::cout << "node      " << pathOf(hit) << "\npoint     " << hit.point.x << ' ' << hit.point.y << ' '
                  << hit.point.z << "\ndistance  " << hit.distance << "\nprimitive " << hit.primitive
                  << "\nvertex    " << hit.index << '\n';
        return 0;
    }

private:
    std::string model;
    std::vector<float> from;
    std::vector<float> to;
};
} // namespace

std::unique_ptr<Command> makePickCommand()
{
    return std::make_unique<PickCommand>();
}
