"""Runs inside Blender: the points of a LAS file (point format 2 or 3) as spheres, rendered with Cycles.

    blender -b --python cycles_scene.py -- render CLOUD.las RADIUS WIDTH HEIGHT OUTPUT.png
    blender -b --python cycles_scene.py -- compare OURS.png THEIRS.png

"compare" prints the share of pixels in which both show points or both show none.
"""
import sys

import bpy
import numpy
from mathutils import Vector

# The view and the light of cycles.sh, in the axes of its cloud (y up); Blender's z is up.
CAMERA, TARGET, FIELD_OF_VIEW = (0, 130, -190), (0, 0, -12), 45
SUN_FROM = (0.5, 0.7071068, -0.5)
SIZE = 200  # width to which the cloud is fitted


def swapped(v):
    return Vector((v[0], v[2], v[1]))


def read_las(path):
    """Positions and colours, fitted as the point cloud object does it."""
    with open(path, "rb") as file:
        header = file.read(227)
    number = lambda kind, at, count=1: numpy.frombuffer(header, kind, count, at)
    record = number("<u2", 105)[0]
    layout = numpy.dtype({"names": ["at", "rgb"], "formats": [("<i4", 3), ("<u2", 3)],
                          "offsets": [0, {2: 20, 3: 28}[header[104]]], "itemsize": int(record)})
    points = numpy.fromfile(path, layout, number("<u4", 107)[0], offset=int(number("<u4", 96)[0]))
    at = points["at"] * number("<f8", 131, 3)
    low, high = at.min(axis=0), at.max(axis=0)
    scale = SIZE / (high - low).max()
    middle = (low + high) / 2
    at = (at - (middle[0], middle[1], low[2])) * scale
    colors = numpy.ones((len(at), 4), "f4")
    colors[:, :3] = points["rgb"] / 65535.0
    return at.astype("f4"), colors


def render(path, radius, width, height, output):
    bpy.ops.wm.read_factory_settings(use_empty=True)
    scene = bpy.context.scene
    at, colors = read_las(path)
    mesh = bpy.data.meshes.new("points")
    mesh.vertices.add(len(at))
    mesh.vertices.foreach_set("co", at.ravel())
    mesh.attributes.new("tint", "FLOAT_COLOR", "POINT").data.foreach_set("color", colors.ravel())
    cloud = bpy.data.objects.new("points", mesh)
    scene.collection.objects.link(cloud)

    # A matt material in the colour of the point.
    material = bpy.data.materials.new("points")
    material.use_nodes = True
    nodes = material.node_tree.nodes
    nodes.clear()
    tint, matt, out = (nodes.new("ShaderNode" + kind) for kind in ("Attribute", "BsdfDiffuse", "OutputMaterial"))
    tint.attribute_name = "tint"
    material.node_tree.links.new(tint.outputs["Color"], matt.inputs["Color"])
    material.node_tree.links.new(matt.outputs[0], out.inputs["Surface"])

    # Vertices become spheres.
    group = bpy.data.node_groups.new("spheres", "GeometryNodeTree")
    group.inputs.new("NodeSocketGeometry", "Geometry")
    group.outputs.new("NodeSocketGeometry", "Geometry")
    begin, end = group.nodes.new("NodeGroupInput"), group.nodes.new("NodeGroupOutput")
    spheres, paint = group.nodes.new("GeometryNodeMeshToPoints"), group.nodes.new("GeometryNodeSetMaterial")
    spheres.inputs["Radius"].default_value = radius
    paint.inputs["Material"].default_value = material
    group.links.new(begin.outputs[0], spheres.inputs[0])
    group.links.new(spheres.outputs[0], paint.inputs[0])
    group.links.new(paint.outputs[0], end.inputs[0])
    cloud.modifiers.new("spheres", "NODES").node_group = group

    camera = bpy.data.cameras.new("camera")
    camera.sensor_fit, camera.angle = "VERTICAL", numpy.radians(FIELD_OF_VIEW)
    camera.clip_end = 10000
    scene.camera = bpy.data.objects.new("camera", camera)
    scene.camera.location = swapped(CAMERA)
    scene.camera.rotation_euler = (swapped(TARGET) - swapped(CAMERA)).to_track_quat("-Z", "Y").to_euler()
    sun = bpy.data.lights.new("sun", "SUN")
    sun.angle, sun.energy = 0, numpy.pi
    light = bpy.data.objects.new("sun", sun)
    light.rotation_euler = (-swapped(SUN_FROM)).to_track_quat("-Z", "Y").to_euler()
    for each in (scene.camera, light):
        scene.collection.objects.link(each)

    scene.render.engine = "CYCLES"
    cycles = scene.cycles
    cycles.samples, cycles.use_adaptive_sampling, cycles.use_denoising = 4, False, False
    cycles.max_bounces = 0
    cycles.pixel_filter_type, cycles.filter_width = "BOX", 1
    scene.render.film_transparent = True
    scene.render.resolution_x, scene.render.resolution_y = width, height
    scene.render.filepath = output
    bpy.ops.render.render(write_still=True)


def compare(ours, theirs):
    def pixels(path):
        image = bpy.data.images.load(path)
        return numpy.array(image.pixels[:], "f4").reshape(image.size[1], image.size[0], 4)

    # Ours lies on pure magenta, which no point has; theirs on nothing.
    first, second = pixels(ours), pixels(theirs)
    covered = numpy.abs(first[:, :, :3] - (1, 0, 1)).max(axis=2) > 0.5
    print("same silhouette in %.4f of all pixels, %.4f of them show points" %
          ((covered == (second[:, :, 3] > 0.5)).mean(), covered.mean()))


arguments = sys.argv[sys.argv.index("--") + 1:]
if arguments[0] == "render":
    render(arguments[1], float(arguments[2]), int(arguments[3]), int(arguments[4]), arguments[5])
else:
    compare(*arguments[1:])
